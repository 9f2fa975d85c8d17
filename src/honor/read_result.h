#pragma once

#include "honor/leaderboard_entry.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace tally::honor {

/// What one successful read gives. Times are seconds since the Unix epoch.
struct ReadResult {
    std::optional<std::int64_t> own_honor; ///< the player's; empty if not in the roll
    std::optional<int> own_rank;
    std::optional<int> own_kingdom;
    double finished_at = 0;
    double started_at = 0;
    std::vector<LeaderboardEntry> entries; ///< the roll, in rank order
    std::uint64_t candidates = 0;          ///< how many addresses the candidate set held
    double elapsed = 0;                    ///< seconds
    QString player_name;                   ///< the name that was looked for
};

} // namespace tally::honor
