#pragma once

#include <QIcon>

namespace tally::ui {

/// An icon that a selection does not tint.
QIcon steady_icon(const QPixmap &picture);

} // namespace tally::ui
