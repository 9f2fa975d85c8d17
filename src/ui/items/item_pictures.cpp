#include "ui/items/item_pictures.h"

#include "data/master/master_cache.h"
#include "ui/items/item_tile.h"
#include "ui/items/picture_caches.h"
#include "ui/parts/sharp_pixmap.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>

namespace tally::ui {
namespace {

constexpr int largest_icon_side = 4096;

QPixmap read_picture(const QString &path)
{
    // A full disk once left it. Icons are fetched by their absence, so it has to go to come again.
    if (QFileInfo(path).size() == 0) {
        QFile::remove(path);
        return {};
    }
    QImageReader reader(path);
    const QSize size = reader.size();
    if (size.width() > largest_icon_side || size.height() > largest_icon_side)
        return {};
    return QPixmap::fromImageReader(&reader);
}

std::optional<QString> item_icon_path(const QString &icon, const QString &icon_dir)
{
    if (icon.isEmpty())
        return std::nullopt;
    return data::MasterCache::instance().icon_path(QStringLiteral("all_loot"), icon, icon_dir);
}

} // namespace

QPixmap icon_picture(const QString &path)
{
    auto &icons = picture_caches().icons;
    if (const QPixmap *kept = icons.object(path))
        return *kept;
    const QPixmap picture = read_picture(path);
    if (!picture.isNull())
        keep_picture(icons, path, picture);
    return picture;
}

QPixmap item_icon(const QString &icon, const QString &icon_dir)
{
    const std::optional<QString> path = item_icon_path(icon, icon_dir);
    const QPixmap picture = path ? icon_picture(*path) : QPixmap();
    if (picture.isNull() && !icon.isEmpty())
        ++picture_caches().news;
    return picture;
}

QPixmap item_tile(const ItemTile &tile, const QString &icon_dir)
{
    auto &tiles = picture_caches().tiles;
    TileKey key{.icon_path = item_icon_path(tile.icon, icon_dir).value_or(QString()),
                .badge = item_badge(tile),
                .unit_text = tile.unit_text,
                .quantity_text = tile.quantity_text,
                .fallback = {},
                .size = tile.size,
                .pixel_ratio = sharpest_pixel_ratio()};
    if (const QPixmap *kept = key.icon_path.isEmpty() ? nullptr : tiles.object(key))
        return *kept;

    const QPixmap icon = key.icon_path.isEmpty() ? QPixmap() : icon_picture(key.icon_path);
    if (icon.isNull()) {
        if (!tile.icon.isEmpty())
            ++picture_caches().news;
        key.icon_path.clear();
        key.fallback = tile.fallback;
        if (const QPixmap *kept = tiles.object(key))
            return *kept;
    }
    // Quantities differ, what is behind them does not.
    TileKey bare_key = key;
    bare_key.unit_text.clear();
    bare_key.quantity_text.clear();
    const QPixmap *kept_bare = tiles.object(bare_key);
    const QPixmap bare =
        kept_bare ? *kept_bare : render_bare_tile(icon, key.badge, key.size, key.fallback);
    if (!kept_bare)
        keep_picture(tiles, bare_key, bare);
    if (key == bare_key)
        return bare;
    const QPixmap picture = with_texts(bare, key.unit_text, key.quantity_text, key.size);
    keep_picture(tiles, key, picture);
    return picture;
}

void forget_item_pictures()
{
    PictureCaches &caches = picture_caches();
    caches.icons.clear();
    caches.tiles.clear();
    caches.hero_pairs.clear();
    ++caches.news;
}

} // namespace tally::ui
