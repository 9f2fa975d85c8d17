#pragma once

#include "data/store/records.h"

#include <QPixmap>
#include <QString>

#include <vector>

namespace tally::ui {

/// Tiles in a row, in list order, with the facts of the reference tables; null for no items.
/// \param tile_size side of a tile, and \param gap between two of them, in pixels
QPixmap render_loot_strip(const std::vector<data::LootStripItem> &items, const QString &icon_dir,
                          int tile_size, int gap);

} // namespace tally::ui
