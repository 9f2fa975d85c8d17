#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace tally::honor {

/// One person of the honor roll.
struct LeaderboardEntry {
    std::uint64_t address = 0; ///< of the name's first byte in the game's memory
    QString name;
    std::optional<std::int64_t> honor; ///< empty if the value found wasn't plausible
    std::optional<int> rank;           ///< 1-based place in the sorted roll
    std::optional<int> kingdom;        ///< guessed from the record's neighbourhood
};

} // namespace tally::honor
