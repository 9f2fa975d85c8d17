#pragma once

#include "host/process_memory.h"
#include "marker_scan.h"

#include <cstdint>
#include <stop_token>
#include <vector>

namespace tally::honor {

/// Looks between `low` and `high` for addresses from which to try to read the roll, at most 64.
/// The work is bounded by the memory walked and some 64 MiB more, however often a name stands in
/// it: one pass finds the names in the shape of records (a tag and the length before them), the 32
/// best sites of the player and as many of the enemies are looked at from close by, and each gives
/// one start at most. The enemies' sites count only where none shows a plausible honor of the
/// player.
std::vector<std::uint64_t> find_marker_addresses(platform::ProcessMemory &process,
                                                 std::uint64_t low, std::uint64_t high,
                                                 const Markers &markers,
                                                 const std::stop_token &stop);

} // namespace tally::honor
