#include "ui/pinning/game_window_row.h"

#include "ui/pinning/window_row_text.h"
#include "ui/pinning/wrapped_text.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QRadioButton>

namespace tally::ui {

GameWindowRow::GameWindowRow(const platform::GameWindowInfo &window, QWidget *parent)
    : QFrame(parent), radio_(new QRadioButton{this})
{
    setStyleSheet(QStringLiteral("QFrame { background: rgba(88, 101, 242, 0.08); border: 1px solid "
                                 "rgba(88, 101, 242, 0.3); border-radius: 4px; padding: 4px; }"));
    radio_->setStyleSheet(QStringLiteral("QRadioButton { padding: 4px; }"));
    radio_->setAccessibleName(window_row_spoken(window));

    auto *label = new WrappedText{window_row_html(window), this};
    // A label is a frame as well; without this it would draw a second box inside the row's.
    label->setStyleSheet(QStringLiteral("background: transparent; border: none; padding: 0;"));

    auto *layout = new QHBoxLayout{this};
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addWidget(radio_, 0, Qt::AlignTop);
    layout->addWidget(label, 1);
}

void GameWindowRow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        radio_->setChecked(true);
        radio_->setFocus(Qt::MouseFocusReason);
    }
    QFrame::mousePressEvent(event);
}

} // namespace tally::ui
