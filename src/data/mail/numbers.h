#pragma once

#include <limits>
#include <optional>

namespace tally::data {

/// `value` with its fraction cut off, or nothing where an `int` cannot hold it: numbers from mails
/// are bounded by nothing, and the bare cast is undefined for those.
constexpr std::optional<int> to_int(double value)
{
    constexpr double below_min = double{std::numeric_limits<int>::min()} - 1.0;
    constexpr double above_max = double{std::numeric_limits<int>::max()} + 1.0;
    if (!(value > below_min && value < above_max)) // also false for NaN
        return std::nullopt;
    return static_cast<int>(value);
}

constexpr std::optional<int> to_int(std::optional<double> value)
{
    return value ? to_int(*value) : std::nullopt;
}

} // namespace tally::data
