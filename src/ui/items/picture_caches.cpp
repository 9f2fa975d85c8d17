#include "ui/items/picture_caches.h"

#include "ui/items/item_pictures.h"

#include <QCoreApplication>

namespace tally::ui {
namespace {

constexpr qsizetype icons_kib = qsizetype{24} * 1024;
constexpr qsizetype tiles_kib = qsizetype{24} * 1024;
constexpr qsizetype hero_pairs_kib = qsizetype{8} * 1024;

quint64 colour_bits(const std::optional<QColor> &colour)
{
    return colour ? quint64{1} << 32 | colour->rgba() : 0;
}

} // namespace

size_t qHash(const TileKey &key, size_t seed)
{
    return qHashMulti(seed, key.icon_path, colour_bits(key.badge.fill),
                      colour_bits(key.badge.border), key.unit_text, key.quantity_text, key.fallback,
                      key.size, key.pixel_ratio);
}

size_t qHash(const HeroPairKey &key, size_t seed)
{
    return qHashMulti(seed, key.path_1, key.path_2, key.size, key.gap, key.pixel_ratio);
}

PictureCaches &picture_caches()
{
    static PictureCaches caches{QCache<QString, QPixmap>(icons_kib),
                                QCache<TileKey, QPixmap>(tiles_kib),
                                QCache<HeroPairKey, QPixmap>(hero_pairs_kib), 0};
    // Pixmaps must not outlive the application.
    static const bool registered = [] {
        qAddPostRoutine(forget_item_pictures);
        return true;
    }();
    Q_UNUSED(registered)
    return caches;
}

} // namespace tally::ui
