#pragma once

#include <functional>

namespace tally::platform {

/// Tells the time as seconds since the Unix epoch. Passed to whoever needs it, so that a test can
/// stand still.
using Clock = std::function<double()>;

/// The machine's clock, in whole milliseconds.
double system_time();

} // namespace tally::platform
