#include "ui/items/loot_strip.h"

#include "data/master/master_cache.h"
#include "ui/items/item_look.h"
#include "ui/items/item_pictures.h"
#include "ui/parts/sharp_pixmap.h"

#include <QPainter>

#include <algorithm>

namespace tally::ui {
namespace {

/// Painters count in 16 bits; what a mail lists beyond that has no room on any screen.
constexpr int widest_strip = 32'767;

QPixmap strip_tile(const data::LootStripItem &item, const QString &icon_dir, int size)
{
    const data::ItemInfo info =
        data::MasterCache::instance().item(item.item_type, item.item_subtype);
    return item_tile({.icon = info.icon,
                      .unit = info.unit,
                      .name = info.name,
                      .unit_value = info.unit_value,
                      .unit_text = unit_label(info),
                      .quantity_text = QString::number(item.quantity),
                      .size = size,
                      .fallback = QStringLiteral("S%1").arg(item.item_subtype)},
                     icon_dir);
}

} // namespace

QPixmap render_loot_strip(const std::vector<data::LootStripItem> &items, const QString &icon_dir,
                          int tile_size, int gap)
{
    const int step = tile_size + gap;
    if (items.empty() || tile_size < 1 || step < 1)
        return {};
    const auto room = static_cast<size_t>(widest_strip / sharpest_pixel_ratio() / step);
    const int shown = static_cast<int>(std::min(items.size(), room));

    QPixmap strip = sharp_pixmap(shown * step - gap, tile_size);
    QPainter painter(&strip);
    for (int i = 0; i < shown; ++i)
        painter.drawPixmap(i * step, 0,
                           strip_tile(items[static_cast<size_t>(i)], icon_dir, tile_size));
    return strip;
}

} // namespace tally::ui
