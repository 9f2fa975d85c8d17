#pragma once

#include <chrono>

namespace tally::app {

/// Ends the process after `time` if it has not ended by then, in whatever state it is. For the way
/// out alone: Qt waits there without an end for the names of hosts that are still being looked up.
void end_process_within(std::chrono::milliseconds time);

} // namespace tally::app
