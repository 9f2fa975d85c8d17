#include "ui/chains/scroll_scale.h"

#include <algorithm>

namespace tally::ui {
namespace {

constexpr qint64 most_steps = 1 << 30; // leaves a scroll bar room to add a page to its value

qint64 rounded_up(qint64 pixels, qint64 a_step)
{
    return (pixels + a_step - 1) / a_step;
}

} // namespace

ScrollScale::ScrollScale(qint64 way)
    : way_(std::max<qint64>(way, 0)), pixels_a_step_(std::max<qint64>(rounded_up(way_, most_steps), 1))
{}

int ScrollScale::maximum() const
{
    return static_cast<int>(rounded_up(way_, pixels_a_step_));
}

qint64 ScrollScale::offset_of(int value) const
{
    return std::clamp<qint64>(value * pixels_a_step_, 0, way_);
}

int ScrollScale::value_of(qint64 offset) const
{
    return offset >= way_ ? maximum() : static_cast<int>(std::max<qint64>(offset, 0) / pixels_a_step_);
}

int ScrollScale::steps(int pixels) const
{
    return static_cast<int>(std::max<qint64>(pixels / pixels_a_step_, 1));
}

} // namespace tally::ui
