#include "ui/alerts/alert_look.h"

#include <QPainter>
#include <QStyleOption>

namespace tally::ui {

void make_alert(QWidget &alert)
{
    alert.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    alert.setAttribute(Qt::WA_DeleteOnClose);
    alert.setCursor(Qt::PointingHandCursor);
}

void paint_alert(QWidget &alert)
{
    QStyleOption option;
    option.initFrom(&alert);
    QPainter painter(&alert);
    alert.style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, &alert);
}

} // namespace tally::ui
