#pragma once

#include "sample_items.h"

#include <QColor>
#include <QImage>

namespace tally::sample {

inline constexpr int icon_size = 128;

/// A square picture of an item on a transparent ground.
QImage item_icon(Motif motif, QColor colour);

/// A helmet before a disc; each index has a look of its own.
QImage hero_icon(int index);

/// The helmet of whoever has no picture.
QImage unknown_hero_icon();

} // namespace tally::sample
