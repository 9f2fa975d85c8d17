#include "ui/honor/elided_label.h"

#include <QHelpEvent>
#include <QStyle>
#include <QStylePainter>
#include <QToolTip>

namespace tally::honor {

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 6, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    const QRect area = contentsRect();
    painter.drawItemText(
        area, static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
        isEnabled(), fontMetrics().elidedText(text(), Qt::ElideRight, area.width()),
        foregroundRole());
}

bool ElidedLabel::fits() const
{
    return fontMetrics().horizontalAdvance(text()) <= contentsRect().width();
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && !fits()) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), text().toHtmlEscaped(),
                           this);
        return true;
    }
    return QLabel::event(event);
}

} // namespace tally::honor
