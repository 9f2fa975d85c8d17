#pragma once

#include <QPoint>
#include <QRect>

namespace tally::ui {

/// Where the toast of this number stands: from the lower right corner upwards, and where the screen
/// ends in a further column to the left.
QPoint toast_place(int number, const QRect &available);

} // namespace tally::ui
