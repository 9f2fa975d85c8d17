#include "ui/alerts/toast_places.h"

#include <algorithm>

namespace tally::ui {

QPoint toast_place(int number, const QRect &available)
{
    constexpr int from_right = 400;
    constexpr int from_bottom = 120;
    constexpr int row_step = 108;
    constexpr int column_step = 388;
    const int rows =
        std::max(1, (available.bottom() - from_bottom - available.top()) / row_step + 1);
    return {available.right() - from_right - number / rows * column_step,
            available.bottom() - from_bottom - number % rows * row_step};
}

} // namespace tally::ui
