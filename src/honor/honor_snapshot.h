#pragma once

#include "honor/leaderboard_entry.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace tally::honor {

/// What is known of the player's honor at one moment. Times are seconds since the Unix epoch.
struct HonorSnapshot {
    std::optional<std::int64_t> base_honor; ///< the last value read
    std::optional<double> base_ts;          ///< when it was read
    int delta_reports = 0;                  ///< what imported reports have earned since
    std::optional<std::int64_t> estimated;  ///< base and delta
    std::optional<int> rank;
    std::optional<int> kingdom;
    std::vector<LeaderboardEntry> leaderboard; ///< the last roll, in rank order
    QString player_name;                       ///< empty until detected
    bool running = false;                      ///< a reading is under way
};

/// One person to overtake.
struct OvertakeRow {
    int rank = 0;
    QString name;
    std::int64_t honor = 0;
    std::int64_t gap = 0; ///< to the player's estimate; 0 and below: overtaken
};

/// Up to `count` people just ahead of the player, the farthest first; without those whom the roll
/// does not hold.
std::vector<OvertakeRow> overtake_targets(const HonorSnapshot &snapshot, int count);

} // namespace tally::honor
