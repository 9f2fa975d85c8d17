#pragma once

#include "honor/leaderboard_entry.h"

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace tally::honor {

/// The roll's records as they lie in a copy of the game's memory. A record is recognised from its
/// tag byte at offset T, all of it little-endian: honor as a 64-bit number at T - 32, the tag 0x0A
/// at T, the length of the name at T + 1, the name in UTF-8 at T + 2. The kingdom is some number
/// in the 128 bytes before T.

inline constexpr char record_tag = 0x0A;
inline constexpr qsizetype honor_before_tag = 32;
inline constexpr qsizetype name_behind_tag = 2;
inline constexpr qsizetype honor_before_name = honor_before_tag + name_behind_tag;
inline constexpr qsizetype kingdom_reach = 128;
inline constexpr qsizetype longest_own_name = 255;

/// Both bounds included.
struct HonorRange {
    std::int64_t low;
    std::int64_t high;

    constexpr bool holds(std::int64_t value) const { return value >= low && value <= high; }
};
inline constexpr HonorRange plausible_own_honor{100'000, 2'000'000};
inline constexpr HonorRange plausible_entry_honor{1'000, 2'000'000};

/// Whether a decoded text can be a player's name: at least 3 UTF-16 units, no control characters
/// but the tab, no surrogates and no private use.
bool valid_name(const QString &name);

/// The name of the record whose tag stands at index `tag`; empty if there is no record.
QString record_name_at(QByteArrayView buffer, qsizetype tag);

/// How many records begin in the buffer, overlapping ones included.
int count_records(QByteArrayView buffer);

/// The largest honor within `range` of all records of that very name; nothing without one, or for a
/// name of no bytes or more than 255.
std::optional<std::int64_t> largest_honor_of(QByteArrayView buffer, const QString &name,
                                             HonorRange range);

/// The records of the buffer in ascending order, not overlapping, unranked. `base_address` is the
/// address of the buffer's first byte.
std::vector<LeaderboardEntry> parse_entries(QByteArrayView buffer, std::uint64_t base_address);

/// The first entry of each name, compared exactly, highest honor first, ranked from 1. An empty
/// honor counts as 0.
std::vector<LeaderboardEntry> ranked_roll(std::vector<LeaderboardEntry> entries);

/// The buffer without the whole 4096-byte blocks of zeros at its end.
QByteArrayView without_zero_tail(QByteArrayView buffer);

} // namespace tally::honor
