#include "ui/field/field_fight_details_window.h"

#include "data/store/tally_db.h"
#include "settings/catalogue.h"
#include "ui/field/attack_details.h"
#include "ui/field/attack_side_panel.h"
#include "ui/field/copyable_text.h"
#include "ui/field/kept_size.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollArea>

namespace tally::ui {
namespace {

constexpr QSize first_size(1100, 720);

/// A window's title takes "[*]" for the sign of a change.
QString as_window_title(QString text)
{
    return text.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

QLabel *outcome_label(Outcome outcome)
{
    struct Look {
        Outcome outcome;
        const char16_t *text;
        const char16_t *colour;
    };
    constexpr Look looks[] = {{Outcome::Win, u"WIN", u"#0ca678"},
                              {Outcome::Loss, u"LOSS", u"#ff8787"},
                              {Outcome::Draw, u"DRAW", u"#ffd43b"}};
    const Look *look = looks;
    while (look->outcome != outcome)
        ++look;
    return copyable_label(QString::fromUtf16(look->text),
                          QStringLiteral("color: %1; font-size: 16pt; font-weight: bold; "
                                         "background: transparent;")
                              .arg(QString::fromUtf16(look->colour)));
}

QScrollArea *new_body(const AttackDetails &details)
{
    auto *sides = new QWidget;
    auto *row = new QHBoxLayout(sides);
    row->setContentsMargins(14, 10, 14, 10);
    row->setSpacing(12);
    row->addWidget(new_side_panel(details.mine), 1);
    row->addWidget(new_side_panel(details.theirs), 1);
    auto *body = new QScrollArea;
    body->setFrameShape(QFrame::NoFrame);
    body->setWidgetResizable(true);
    body->setWidget(sides);
    return body;
}

void add_cell(QGridLayout &grid, int row, int column, const QString &text, const QString &style)
{
    QLabel *cell = copyable_label(text, style);
    cell->setAlignment(Qt::AlignCenter);
    grid.addWidget(cell, row, column);
}

void add_side(QGridLayout &grid, int row, const QString &name, const SideDetails &side)
{
    const QString number_style =
        QStringLiteral("font-family: Consolas, monospace; font-size: 10pt;");
    add_cell(grid, row, 0, name, number_style + QStringLiteral(" font-weight: bold;"));
    int column = 0;
    for (const QString &loss : side.losses)
        add_cell(grid, row, ++column, loss, number_style);
}

QGroupBox *new_statistics(const AttackDetails &details)
{
    auto *statistics = new QGroupBox(QStringLiteral("Battle statistics"));
    statistics->setAccessibleName(statistics->title());
    auto *layout = new QVBoxLayout(statistics);
    layout->setContentsMargins(14, 8, 14, 8);
    auto *grid = new QGridLayout;
    grid->setSpacing(8);
    int column = 0;
    for (const char16_t *title : loss_titles)
        add_cell(*grid, 0, ++column, QString::fromUtf16(title),
                 QStringLiteral("color: #888; font-size: 9pt; font-weight: bold;"));
    add_side(*grid, 1, QStringLiteral("MY"), details.mine);
    add_side(*grid, 2, QStringLiteral("ENEMY"), details.theirs);
    layout->addLayout(grid);
    QLabel *ratio = copyable_label(
        details.ratio, QStringLiteral("color: #5865f2; font-size: 10pt; font-weight: bold;"));
    ratio->setAlignment(Qt::AlignCenter);
    layout->addWidget(ratio);
    return statistics;
}

} // namespace

FieldFightDetailsWindow::FieldFightDetailsWindow(const QVariantMap &row, const Surroundings &around,
                                                 QWidget *parent)
    : QDialog(parent), around_(around), favorite_(around.queries, queries::Sight::Seen)
{
    const AttackDetails details = attack_details(row);
    favorite_key_ = details.favorite_key;
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal); // an alert over the game can still be clicked
    setWindowTitle(as_window_title(details.title));
    resize(kept_size(around.settings, settings::field_details_size, first_size));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    QScrollArea *body = new_body(details);
    layout->addWidget(new_head(details));
    layout->addWidget(body, 1);
    layout->addWidget(new_statistics(details));
    body->setFocus(); // for the keys that scroll
    ask_for_favorite();
}

QWidget *FieldFightDetailsWindow::new_head(const AttackDetails &details)
{
    constexpr int height = 48;
    auto *head = new QWidget;
    head->setFixedHeight(height);
    head->setStyleSheet(QStringLiteral("background-color: rgba(88, 101, 242, 0.85);"));
    auto *row = new QHBoxLayout(head);
    row->setContentsMargins(18, 0, 18, 0);
    row->addWidget(
        copyable_label(details.head, QStringLiteral("color: white; font-size: 11pt; font-weight: "
                                                    "bold; background: transparent;")),
        1);
    row->addWidget(outcome_label(details.outcome));
    star_button_ = new QPushButton;
    star_button_->setStyleSheet(
        QStringLiteral("QPushButton { background: transparent; color: #ffd43b; font-size: 16pt; "
                       "font-weight: bold; border: none; padding: 0 12px; } "
                       "QPushButton:focus { border: 1px solid #ffd43b; padding: 0 11px; }"));
    star_button_->setCursor(Qt::PointingHandCursor);
    star_button_->setAutoDefault(false); // Enter would press it from everywhere
    connect(star_button_, &QPushButton::clicked, this, &FieldFightDetailsWindow::toggle_favorite);
    row->addWidget(star_button_);
    show_favorite(false);
    return head;
}

void FieldFightDetailsWindow::ask_for_favorite()
{
    if (favorite_key_.isEmpty())
        return;
    favorite_.ask(
        [key = favorite_key_](const data::TallyDb &db, const queries::IsOutdated &) {
            return db.is_field_favorite(key);
        },
        [this](bool is_favorite) { show_favorite(is_favorite); });
}

void FieldFightDetailsWindow::toggle_favorite()
{
    if (favorite_key_.isEmpty() || is_toggling_)
        return;
    is_toggling_ = true;
    setAttribute(Qt::WA_DeleteOnClose, false); // the question would go with the window
    // Not here: while another program holds the store, writing waits for seconds. An asker in sight
    // runs its query once only.
    favorite_.ask(
        [&db = around_.db, key = favorite_key_](const data::TallyDb &,
                                                const queries::IsOutdated &) {
            const bool wanted = !db.is_field_favorite(key);
            db.set_field_favorite(key, wanted);
            return wanted;
        },
        [this](bool is_favorite) {
            show_favorite(is_favorite);
            end_toggling();
        },
        [this](const QString & /*why*/) { end_toggling(); });
}

void FieldFightDetailsWindow::end_toggling()
{
    is_toggling_ = false;
    setAttribute(Qt::WA_DeleteOnClose);
    if (!isVisible())
        deleteLater();
}

void FieldFightDetailsWindow::show_favorite(bool is_favorite)
{
    star_button_->setText(is_favorite ? QStringLiteral("★") : QStringLiteral("☆"));
    star_button_->setAccessibleName(is_favorite ? QStringLiteral("Favorite")
                                                : QStringLiteral("No favorite"));
    star_button_->setToolTip(is_favorite ? QStringLiteral("Remove from the favorites")
                                         : QStringLiteral("Keep among the favorites"));
}

void FieldFightDetailsWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QDialog::keyPressEvent(event);
}

void FieldFightDetailsWindow::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    was_resized_ |= event->spontaneous();
}

void FieldFightDetailsWindow::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (was_resized_ && !isMaximized())
        keep_size(around_.settings, settings::field_details_size, size());
}

} // namespace tally::ui
