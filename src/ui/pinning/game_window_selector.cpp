#include "ui/pinning/game_window_selector.h"

#include "ui/parts/plain_label.h"
#include "ui/pinning/game_window_row.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <utility>

namespace tally::ui {

GameWindowSelector::GameWindowSelector(QList<platform::GameWindowInfo> windows,
                                       const QString &current_exe, QWidget *parent)
    : QDialog(parent), windows_(std::move(windows)), scroll_(new QScrollArea{this})
{
    setWindowTitle(QStringLiteral("Select game window"));
    setModal(true);
    setMinimumWidth(560);

    auto *layout = new QVBoxLayout{this};
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(12);
    layout->addWidget(
        plain_label(QStringLiteral("Which Rise of Kingdoms window?"),
                    QStringLiteral("font-size: 12pt; font-weight: bold; color: #5865f2;")));
    QLabel *explanation = plain_label(
        QStringLiteral("You have multiple game windows open. Select which one the overlay should "
                       "follow when pinned."),
        QStringLiteral("font-size: 9pt; color: #888;"));
    explanation->setWordWrap(true);
    layout->addWidget(explanation);

    scroll_->setAccessibleName(QStringLiteral("Game windows"));
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    scroll_->setMaximumHeight(320);
    scroll_->setWidget(build_rows(current_exe));
    layout->addWidget(scroll_);
    layout->addWidget(build_buttons());
    // Else "Cancel" would have the focus, and the Enter key with it.
    if (QAbstractButton *checked = radios_.checkedButton())
        checked->setFocus();
    connect(&radios_, &QButtonGroup::buttonToggled, this, &GameWindowSelector::scroll_to_checked);
}

void GameWindowSelector::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    scroll_to_checked();
}

/// The arrow keys may check a row that is out of sight.
void GameWindowSelector::scroll_to_checked()
{
    if (QAbstractButton *checked = radios_.checkedButton())
        scroll_->ensureWidgetVisible(checked->parentWidget());
}

QWidget *GameWindowSelector::build_rows(const QString &current_exe)
{
    auto *rows = new QWidget;
    auto *layout = new QVBoxLayout{rows};
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    radios_.setExclusive(true);
    for (qsizetype i = 0; i < windows_.size(); ++i) {
        auto *row = new GameWindowRow{windows_[i]};
        layout->addWidget(row);
        radios_.addButton(row->radio(), static_cast<int>(i));
        if (windows_[i].exe_path.compare(current_exe, Qt::CaseInsensitive) == 0)
            row->radio()->setChecked(true);
    }
    layout->addStretch();
    if (radios_.checkedButton() == nullptr && radios_.button(0) != nullptr)
        radios_.button(0)->setChecked(true);
    return rows;
}

QWidget *GameWindowSelector::build_buttons()
{
    auto *bar = new QWidget{this};
    auto *layout = new QHBoxLayout{bar};
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch();
    auto *cancel = new QPushButton{QStringLiteral("Cancel")};
    auto *select = new QPushButton{QStringLiteral("Select")};
    cancel->setAccessibleName(cancel->text());
    select->setAccessibleName(select->text());
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(select, &QPushButton::clicked, this, &GameWindowSelector::on_ok);
    layout->addWidget(cancel);
    layout->addWidget(select);
    select->setDefault(true); // once it is in the dialog, which else makes "Cancel" the default
    return bar;
}

void GameWindowSelector::on_ok()
{
    const int row = radios_.checkedId();
    if (row < 0 || row >= windows_.size())
        return;
    chosen_exe_path_ = windows_[row].exe_path;
    accept();
}

} // namespace tally::ui
