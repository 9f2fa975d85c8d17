#include "ui/pinning/overlay_font_sizes.h"

#include <algorithm>

namespace tally::ui {

int permitted_font_size(int size)
{
    constexpr int fallback = 10;
    return std::ranges::find(overlay_font_sizes, size) != overlay_font_sizes.end() ? size
                                                                                   : fallback;
}

} // namespace tally::ui
