#pragma once

#include <QPixmap>

class QWidget;

namespace tally::tools {

/// An overlay as it shows over a game, with its opacity.
QPixmap over_busy(QWidget &overlay);

} // namespace tally::tools
