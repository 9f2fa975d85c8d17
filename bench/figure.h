#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace tally::bench {

enum class Goal { at_least, at_most };

/// Ends a benchmark with the one line that says whether it meets its goal.
inline void print_figure(const std::string &name, double value, Goal goal, double limit)
{
    const bool met = goal == Goal::at_least ? value >= limit : value <= limit;
    std::printf("figure %s %.3g goal %s%g %s\n", name.c_str(), value,
                goal == Goal::at_least ? ">=" : "<=", limit, met ? "met" : "missed");
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace tally::bench
