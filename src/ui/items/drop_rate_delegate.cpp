#include "ui/items/drop_rate_delegate.h"

#include "ui/items/loot_table_model.h"

#include <QPainter>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr qreal corner_radius = 5.0;
constexpr int smallest_width = 120;
constexpr int smallest_height = 24;

struct BarColour {
    double at_least;
    QRgb colour;
};

constexpr BarColour bar_colours[] = {{30.0, 0xff2ecc71}, {10.0, 0xfff1c40f}, {0.0, 0xffe67e22}};

QColor bar_colour(double rate)
{
    for (const auto &[at_least, colour] : bar_colours) {
        if (rate >= at_least)
            return QColor::fromRgb(colour);
    }
    return {};
}

/// Nothing and what is no number counts as 0.
double clamped_rate(double rate)
{
    return rate > 0.0 ? std::min(rate, 100.0) : 0.0;
}

void draw_bar(QPainter &painter, const QRect &track, double rate)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(120, 120, 120, 50));
    painter.drawRoundedRect(track, corner_radius, corner_radius);
    const int width = static_cast<int>(track.width() * rate / 100.0);
    if (width < 1)
        return;
    painter.setBrush(bar_colour(rate));
    painter.drawRoundedRect(QRect(track.topLeft(), QSize(width, track.height())), corner_radius,
                            corner_radius);
}

void draw_rate(QPainter &painter, const QRect &track, double rate)
{
    const QString text = QStringLiteral("%1%").arg(rate, 0, 'f', 1);
    painter.setFont(QFont(QStringLiteral("Segoe UI"), 9, QFont::Bold));
    painter.setPen(Qt::black);
    for (const QPoint offset : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)})
        painter.drawText(track.translated(offset), Qt::AlignCenter, text);
    painter.setPen(Qt::white);
    painter.drawText(track, Qt::AlignCenter, text);
}

} // namespace

void DropRateDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    const QVariant value = index.data(LootTableModel::drop_rate_role);
    if (value.isNull()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const double rate = clamped_rate(value.toDouble());
    const QRect track = option.rect.adjusted(6, 4, -8, -4);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (option.state.testFlag(QStyle::State_Selected))
        painter->fillRect(option.rect, option.palette.highlight());
    draw_bar(*painter, track, rate);
    draw_rate(*painter, track, rate);
    painter->restore();
}

QSize DropRateDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index)
        .expandedTo({smallest_width, smallest_height});
}

} // namespace tally::ui
