#pragma once

#include <cmath>
#include <limits>

namespace tally::test {

/// Numbers that no `int` can hold.
inline const double hostile_numbers[] = {
    2147483648.0,
    -2147483649.0,
    1e300,
    -1e300,
    std::numeric_limits<double>::infinity(),
    -std::numeric_limits<double>::infinity(),
    std::nan(""),
};

} // namespace tally::test
