#pragma once

#include <QPixmap>
#include <QString>

namespace tally::ui {

/// Pictures that were read from icon files, kept by file and, for tiles, by all that they show, so
/// that showing the same loot again decodes nothing. Bounded; GUI thread only.

/// The picture in an icon file; null if it is none.
QPixmap icon_picture(const QString &path);

/// The icon of an item out of the reference tables' section "all_loot"; null if there is none.
/// \param icon the item's icon name, may be empty
QPixmap item_icon(const QString &icon, const QString &icon_dir);

/// What a tile shows.
struct ItemTile {
    QString icon = {}; ///< the item's icon name, may be empty
    QString unit = {};
    QString name = {};
    double unit_value = 1.0;
    QString unit_text = {};
    QString quantity_text = {};
    int size = 0; ///< side in pixels
    QString fallback = {};
};

/// As `render_item_tile` paints it.
QPixmap item_tile(const ItemTile &tile, const QString &icon_dir);

/// To be called when reference data has arrived: names and icons may now be others.
void forget_item_pictures();

} // namespace tally::ui
