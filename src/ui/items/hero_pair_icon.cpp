#include "ui/items/hero_pair_icon.h"

#include "data/master/master_cache.h"
#include "ui/items/item_pictures.h"
#include "ui/items/picture_caches.h"
#include "ui/parts/sharp_pixmap.h"
#include "ui/parts/steady_icon.h"

#include <QFileInfo>
#include <QPainter>

namespace tally::ui {

std::optional<QString> hero_icon_path(const QString &icon, const QString &icon_dir)
{
    const auto &cache = data::MasterCache::instance();
    const auto section = QStringLiteral("commanders");
    const QString key = QFileInfo(icon).completeBaseName();
    if (!key.isEmpty()) {
        if (auto path = cache.icon_path(section, key, icon_dir))
            return path;
    }
    return cache.icon_path(section, QStringLiteral("unknown"), icon_dir);
}

QIcon render_hero_pair(const QString &icon_1, const QString &icon_2, const QString &icon_dir,
                       int size, int gap)
{
    auto &pairs = picture_caches().hero_pairs;
    const HeroPairKey key{.path_1 = hero_icon_path(icon_1, icon_dir).value_or(QString()),
                          .path_2 = hero_icon_path(icon_2, icon_dir).value_or(QString()),
                          .size = size,
                          .gap = gap,
                          .pixel_ratio = sharpest_pixel_ratio()};
    if (key.path_1.isEmpty() || key.path_2.isEmpty())
        ++picture_caches().news;
    if (key.path_1.isEmpty() && key.path_2.isEmpty())
        return {};
    if (const QPixmap *kept = pairs.object(key))
        return steady_icon(*kept);

    QPixmap pair = sharp_pixmap(2 * size + gap, size);
    if (pair.isNull())
        return {};
    bool complete = true;
    QPainter painter(&pair);
    int left = 0;
    for (const QString &path : {key.path_1, key.path_2}) {
        const QPixmap picture = path.isEmpty() ? QPixmap() : icon_picture(path);
        if (picture.isNull())
            complete = false;
        else
            painter.drawPixmap(left, 0, fitted_picture(picture, size));
        left += size + gap;
    }
    painter.end();
    if (complete)
        keep_picture(pairs, key, pair);
    else
        ++picture_caches().news;
    return steady_icon(pair);
}

} // namespace tally::ui
