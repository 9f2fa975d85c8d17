#include "busy_picture.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QWidget>

namespace tally::tools {
namespace {

/// Colours, edges and writing, as a game has them all over.
void paint_busy(QPainter &painter, const QRect &area)
{
    QRandomGenerator random(7);
    painter.fillRect(area, QColor(0x4f7a3a));
    for (int i = 0; i < area.width() * area.height() / 900; ++i) {
        const QPoint at(random.bounded(area.width()), random.bounded(area.height()));
        painter.setPen(QColor::fromHsv(random.bounded(360), 160, 240));
        painter.setBrush(QColor::fromHsv(random.bounded(360), 200, 60 + random.bounded(190)));
        if (i % 3 == 0)
            painter.drawText(at, QStringLiteral("12,345 Lv. 45"));
        else
            painter.drawEllipse(at, 4 + random.bounded(24), 4 + random.bounded(16));
    }
}

} // namespace

QPixmap over_busy(QWidget &overlay)
{
    constexpr int margin = 24;
    const QPixmap shown = overlay.grab();
    QPixmap picture(shown.size() + QSize(2 * margin, 2 * margin) * shown.devicePixelRatio());
    picture.setDevicePixelRatio(shown.devicePixelRatio());
    QPainter painter(&picture);
    paint_busy(painter, QRect(QPoint(), overlay.size() + QSize(2 * margin, 2 * margin)));
    painter.setOpacity(overlay.windowOpacity());
    painter.drawPixmap(margin, margin, shown);
    return picture;
}

} // namespace tally::tools
