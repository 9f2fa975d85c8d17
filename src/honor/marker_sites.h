#pragma once

#include "honor/marker_scan.h"

#include <array>
#include <cstdint>
#include <map>
#include <vector>

namespace tally::honor {

/// A place where a marker stands in the shape of a record, and what speaks for a roll around it.
struct MarkerSite {
    MarkerHit hit;
    int others_near = 0; ///< other markers, with a plausible honor, in a roll's reach
};

/// Boils any number of hits down to the few sites that are worth a look. Takes bounded memory:
/// within 16 KiB only the best hit of a marker counts, what lies beyond a roll's reach is settled
/// at once, and only the best sites are kept.
class SiteCollector {
public:
    static constexpr std::size_t most_player_sites = 192;
    static constexpr std::size_t most_enemy_sites = 64;
    /// A player's record lies within this distance of wherever his roll begins or ends.
    static constexpr std::uint64_t roll_reach = 0x80000;

    /// Takes hits whose addresses ascend, save for some that are told twice.
    void add(const MarkerHit &hit);

    /// The player's best sites, then the enemies', each from the highest honor down. Ends the
    /// collection.
    std::vector<MarkerSite> finish();

private:
    static constexpr std::uint64_t cell_size = 0x4000;
    static constexpr std::uint64_t reach_in_cells = roll_reach / cell_size;
    using Cell = std::array<MarkerHit, 3>; ///< by marker; an address of 0 where there is no hit

    void settle_before(std::uint64_t cell);
    void settle(std::uint64_t index, const Cell &cell);
    int others_near(std::uint64_t index, std::size_t marker) const;

    std::map<std::uint64_t, Cell> recent_; ///< by address / cell_size
    Cell *newest_ = nullptr; ///< in `recent_`: most hits fall where the one before fell
    std::uint64_t newest_index_ = 0;
    std::uint64_t settled_upto_ = 0; ///< every cell below is settled
    std::vector<MarkerSite> player_sites_;
    std::vector<MarkerSite> enemy_sites_;
};

} // namespace tally::honor
