#pragma once

#include "honor/marker_scan.h"
#include "platform/host/process_memory.h"

#include <cstdint>
#include <stop_token>
#include <vector>

namespace tally::honor {

/// Looks between `low` and `high` for addresses from which to try to read the roll, at most 64.
/// However often a name stands there, the work is bounded by one pass over the memory and 256 MiB
/// more: the pass finds the names in the shape of records (a tag and the length before them), the
/// best 192 sites of the player and 64 of the enemies are looked at from close by, 1 MiB each, and
/// each gives one start at most. The enemies' sites count only where none shows a plausible honor
/// of the player.
std::vector<std::uint64_t> find_marker_addresses(platform::ProcessMemory &process,
                                                 std::uint64_t low, std::uint64_t high,
                                                 const Markers &markers,
                                                 const std::stop_token &stop);

} // namespace tally::honor
