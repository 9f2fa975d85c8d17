#pragma once

#include "data/store/trial_records.h"

#include <vector>

class QLabel;
class QString;

namespace tally::ui {

/// A label with a strip of loot; the items' names and amounts are its tool tip. Without items it is
/// empty.
QLabel *new_strip_label(const std::vector<data::LootStripItem> &loot, const QString &icon_dir,
                        int tile_size);

} // namespace tally::ui
