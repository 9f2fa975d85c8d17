#pragma once

#include "honor/marker_sites.h"

#include <QByteArrayView>

#include <cstdint>
#include <optional>
#include <vector>

namespace tally::honor {

/// The windows that a read opens around a candidate address: each begins `before` bytes below it.
struct WindowShape {
    std::uint64_t before;
    std::uint64_t size;
};
inline constexpr WindowShape score_window{0x4000, 0x80000};
inline constexpr WindowShape own_honor_window{0x80000, 0x100000};
inline constexpr WindowShape roll_window{0x4000, 0x100000};
inline constexpr int least_score = 80;
inline constexpr std::size_t most_starts = 64;

/// The honor of the hit's record where that can be the player's own, else 0.
std::int64_t own_honor_at(const MarkerHit &hit);

/// An address from which a read takes in the roll around a hit.
struct RollStart {
    std::uint64_t address = 0;
    std::int64_t own_honor = 0; ///< at the hit; 0 if not plausible as the player's
    std::int64_t honor_sum = 0; ///< of all whom a read from there would see: honor only grows, so
                                ///< that a fuller and fresher copy has the larger sum
};

/// Where to start so that a read sees the roll from its first record on, and nothing before it:
/// of each name a read takes what it meets first, so that an older copy of the roll that lies
/// before the present one must stay outside.
/// \param memory a copy of the surroundings of the hit, which begins at `memory_address`
/// \return nothing if no start has the score that a read asks for
std::optional<RollStart> roll_start_around(const MarkerHit &hit, QByteArrayView memory,
                                           std::uint64_t memory_address);

/// The addresses, at most `most_starts` and the lowest first, of the starts with the most own
/// honor, among these with the largest sum. A read takes the lowest of the addresses that show it
/// the highest own honor: any other start is either never taken, or taken by mistake, for a record
/// that belongs to the roll of a better one.
std::vector<std::uint64_t> best_addresses(const std::vector<RollStart> &starts);

} // namespace tally::honor
