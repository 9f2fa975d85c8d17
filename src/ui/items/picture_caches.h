#pragma once

#include "ui/items/item_look.h"

#include <QCache>
#include <QHash>
#include <QPixmap>
#include <QString>

namespace tally::ui {

/// All that tells one finished tile from another.
struct TileKey {
    QString icon_path; ///< empty where the fallback stands
    ItemBadge badge;
    QString unit_text;
    QString quantity_text;
    QString fallback;
    int size = 0;
    qreal pixel_ratio = 1.0;

    bool operator==(const TileKey &) const = default;
};

struct HeroPairKey {
    QString path_1; ///< empty for a hero without a picture, as the other
    QString path_2;
    int size = 0;
    int gap = 0;
    qreal pixel_ratio = 1.0;

    bool operator==(const HeroPairKey &) const = default;
};

size_t qHash(const TileKey &key, size_t seed = 0);
size_t qHash(const HeroPairKey &key, size_t seed = 0);

/// Finished pictures, the least used of which go when there are too many. Only pictures whose files
/// were read are kept: a file that is missing today may be there at the next look.
struct PictureCaches {
    QCache<QString, QPixmap> icons;
    QCache<TileKey, QPixmap> tiles;
    QCache<HeroPairKey, QPixmap> hero_pairs;
    qint64 news = 0; ///< rises with each picture that is missing, and when all are forgotten
};

/// Emptied when the application ends. GUI thread only.
PictureCaches &picture_caches();

/// Its cost is what it holds in KiB.
template <typename Key>
void keep_picture(QCache<Key, QPixmap> &cache, const Key &key, const QPixmap &picture)
{
    const qint64 bytes = qint64{picture.width()} * picture.height() * picture.depth() / 8;
    cache.insert(key, new QPixmap(picture), bytes / 1024 + 1);
}

} // namespace tally::ui
