#include "ui/chains/stack_geometry.h"

#include <algorithm>

namespace tally::ui {

void StackGeometry::add(qint64 height)
{
    bottoms_.push_back(top(count()) + height);
}

void StackGeometry::set_height(size_t index, qint64 height)
{
    const qint64 change = height - this->height(index);
    for (size_t i = index; change != 0 && i < bottoms_.size(); ++i)
        bottoms_[i] += change;
}

qint64 StackGeometry::top(size_t index) const
{
    return index == 0 ? top_margin_ : bottoms_[index - 1] + spacing_;
}

qint64 StackGeometry::total_height() const
{
    return (bottoms_.empty() ? top_margin_ : bottoms_.back()) + bottom_margin_;
}

std::pair<size_t, size_t> StackGeometry::between(qint64 top, qint64 bottom) const
{
    const auto first = std::ranges::upper_bound(bottoms_, top);
    // A thing begins a spacing below the bottom of the one before it.
    const auto last =
        std::upper_bound(first, bottoms_.end(), bottom - 1, [this](qint64 y, const qint64 &b) {
            return y < this->top(static_cast<size_t>(&b - bottoms_.data()));
        });
    return {static_cast<size_t>(first - bottoms_.begin()),
            static_cast<size_t>(last - bottoms_.begin())};
}

} // namespace tally::ui
