#pragma once

class QGroupBox;

namespace tally::ui {

struct SideDetails;

/// One side of an attack with its heroes and what they brought; without a parent.
QGroupBox *new_side_panel(const SideDetails &side);

} // namespace tally::ui
