#pragma once

#include <QIcon>

namespace tally::ui {

/// The program's mark, in all sizes.
QIcon logo();

} // namespace tally::ui
