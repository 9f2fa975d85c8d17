#include "ui/items/item_tile.h"

#include "ui/parts/sharp_pixmap.h"

#include <QFontMetrics>
#include <QGlyphRun>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr int smallest_point_size = 5;

constexpr QColor outline_colour(0x00, 0x00, 0x00);
constexpr QColor text_colour(0xff, 0xff, 0xff);
constexpr QColor unit_colour(0xff, 0xd7, 0x5f);

/// The tile's font, smaller than asked for where the text would be cut at the tile's edge: a
/// quantity without its first digits is a wrong one.
void set_fitting_font(QPainter &painter, int point_size, const QString &text, int room)
{
    for (int size = point_size; size >= std::min(point_size, smallest_point_size); --size) {
        painter.setFont(QFont(QStringLiteral("Segoe UI"), size, QFont::Bold));
        if (painter.fontMetrics().horizontalAdvance(text) <= room)
            return;
    }
}

void draw_outlined(QPainter &painter, QPoint base, const QString &text, const QColor &colour)
{
    // Shaped once for all nine times that it is drawn.
    QTextLayout layout(text, painter.font());
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    const QPointF origin = base - QPointF(0.0, line.ascent());
    const auto draw = [&](QPointF offset) {
        for (const QGlyphRun &run : runs)
            painter.drawGlyphRun(origin + offset, run);
    };
    painter.setPen(outline_colour);
    for (int dx = -1; dx <= 1; ++dx) {
        for (int dy = -1; dy <= 1; ++dy) {
            if (dx != 0 || dy != 0)
                draw(QPointF(dx, dy));
        }
    }
    painter.setPen(colour);
    draw({});
}

void draw_icon(QPainter &painter, const QPixmap &icon, int size, int border_width)
{
    const QPixmap fitted = fitted_picture(icon, std::max((size - 2 * border_width) * 85 / 100, 4));
    const QSizeF shown = fitted.deviceIndependentSize();
    painter.drawPixmap(QPointF((size - shown.width()) / 2, (size - shown.height()) / 2), fitted);
}

void draw_fallback(QPainter &painter, const QString &fallback, int size, int room)
{
    set_fitting_font(painter, std::max(size * 2 / 9, 9), fallback, room);
    const QFontMetrics metrics = painter.fontMetrics();
    draw_outlined(
        painter,
        {(size - metrics.horizontalAdvance(fallback)) / 2, size / 2 + metrics.ascent() / 2 - 2},
        fallback, text_colour);
}

void draw_quantity(QPainter &painter, const QString &text, int size, int inset, int room)
{
    set_fitting_font(painter, size > 48 ? size * 2 / 9 : 8, text, room);
    const int width = painter.fontMetrics().horizontalAdvance(text);
    draw_outlined(painter, {size - inset - width, size - inset}, text, text_colour);
}

void draw_unit(QPainter &painter, const QString &text, int size, int room)
{
    set_fitting_font(painter, size > 48 ? size * 7 / 36 : 7, text, room);
    draw_outlined(painter, {std::max(size / 20, 3), painter.fontMetrics().height()}, text,
                  unit_colour);
}

} // namespace

QPixmap render_bare_tile(const QPixmap &icon, const ItemBadge &badge, int size,
                         const QString &fallback)
{
    QPixmap tile = sharp_pixmap(size, size);
    if (tile.isNull())
        return tile;
    const int radius = std::max(size / 12, 2);
    const int border_width = std::max(size / 24, 1);
    const QRectF frame(border_width / 2.0, border_width / 2.0, size - border_width,
                       size - border_width);

    QPainter painter(&tile);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (badge.fill) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(*badge.fill);
        painter.drawRoundedRect(frame, radius, radius);
    }
    if (!icon.isNull())
        draw_icon(painter, icon, size, border_width);
    else if (!fallback.isEmpty())
        draw_fallback(painter, fallback, size, size - 2 * std::max(size / 24, 3));
    if (badge.border) {
        painter.setPen(QPen(*badge.border, border_width));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(frame, radius, radius);
    }
    return tile;
}

QPixmap with_texts(QPixmap tile, const QString &unit_text, const QString &quantity_text, int size)
{
    if (tile.isNull() || (unit_text.isEmpty() && quantity_text.isEmpty()))
        return tile;
    const int inset = std::max(size / 24, 3);
    const int room = size - 2 * inset;
    QPainter painter(&tile);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (!quantity_text.isEmpty())
        draw_quantity(painter, quantity_text, size, inset, room);
    if (!unit_text.isEmpty())
        draw_unit(painter, unit_text, size, room);
    return tile;
}

QPixmap render_item_tile(const QPixmap &icon, const QString &unit_text,
                         const QString &quantity_text, const ItemBadge &badge, int size,
                         const QString &fallback)
{
    return with_texts(render_bare_tile(icon, badge, size, fallback), unit_text, quantity_text,
                      size);
}

} // namespace tally::ui
