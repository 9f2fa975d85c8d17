#include "ui/parts/page_view.h"

#include <QEvent>
#include <QScrollBar>
#include <QVBoxLayout>

namespace tally::ui {

PageView::PageView(QWidget *page, QWidget *parent) : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(page); // which also lets us see its events
}

QSize PageView::minimumSizeHint() const
{
    const QSize least = QScrollArea::minimumSizeHint();
    const int width = widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width();
    return {width, least.height()};
}

bool PageView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

void show_in_any_size(QWidget *page, QWidget *parent)
{
    auto *layout = new QVBoxLayout(parent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new PageView(page));
}

} // namespace tally::ui
