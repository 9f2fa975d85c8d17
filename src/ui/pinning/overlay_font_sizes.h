#pragma once

#include <array>

namespace tally::ui {

/// The sizes of type that an overlay can have, in points.
inline constexpr std::array overlay_font_sizes{8, 9, 10, 11, 12, 14, 16, 20, 22, 25, 26};

/// `size` if an overlay can have it, else 10.
int permitted_font_size(int size);

} // namespace tally::ui
