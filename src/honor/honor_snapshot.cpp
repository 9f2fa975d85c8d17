#include "honor/honor_snapshot.h"

#include <algorithm>

namespace tally::honor {

std::vector<OvertakeRow> overtake_targets(const HonorSnapshot &snapshot, int count)
{
    const auto &roll = snapshot.leaderboard;
    if (roll.empty() || !snapshot.rank || !snapshot.estimated || *snapshot.rank < 2)
        return {};
    std::vector<OvertakeRow> targets;
    for (int rank = std::max(*snapshot.rank - count, 1); rank < *snapshot.rank; ++rank) {
        const auto person = std::ranges::find(roll, rank, &LeaderboardEntry::rank);
        if (person == roll.end())
            continue;
        const std::int64_t honor = person->honor.value_or(0);
        targets.push_back({rank, person->name, honor, honor - *snapshot.estimated});
    }
    return targets;
}

} // namespace tally::honor
