#include "ui/chains/stack_geometry.h"

#include <algorithm>

namespace tally::ui {

void StackGeometry::add(int height)
{
    bottoms_.push_back(top(count()) + height);
}

int StackGeometry::top(size_t index) const
{
    return index == 0 ? top_margin_ : bottoms_[index - 1] + spacing_;
}

int StackGeometry::total_height() const
{
    return (bottoms_.empty() ? top_margin_ : bottoms_.back()) + bottom_margin_;
}

std::pair<size_t, size_t> StackGeometry::between(int top, int bottom) const
{
    const auto first = std::ranges::upper_bound(bottoms_, top);
    // A thing begins a spacing below the bottom of the one before it.
    const auto last =
        std::upper_bound(first, bottoms_.end(), bottom - 1, [this](int y, const int &b) {
            return y < this->top(static_cast<size_t>(&b - bottoms_.data()));
        });
    return {static_cast<size_t>(first - bottoms_.begin()),
            static_cast<size_t>(last - bottoms_.begin())};
}

} // namespace tally::ui
