#pragma once

#include "data/store/chain_records.h"

#include <QHash>

#include <limits>
#include <vector>

namespace tally::ui {

/// What other rounds with the same barbarian tell about a round.
struct Meeting {
    bool is_free = false;     ///< won, after an earlier round without loot
    bool is_tactical = false; ///< without loot, but met again later
};

/// Every barbarian that some chains have met, in the order of the chains' start times; a chain
/// without one comes first. Ids count without their fraction.
class Encounters {
public:
    explicit Encounters(const std::vector<data::ChainHead> &chains);

    /// \param rounds all of the chain, in their order
    /// \return what each of them is
    std::vector<Meeting> meetings(size_t chain, const std::vector<data::ChainRound> &rounds) const;

private:
    struct Met {
        static constexpr size_t never = std::numeric_limits<size_t>::max();
        size_t first_lootless = never; ///< when a round first brought no loot
        size_t last = 0;               ///< when it was met last
    };

    std::vector<size_t> order_; ///< when each chain came
    QHash<double, Met> met_;
};

/// What is known of a chain by its rounds.
data::ChainHead head_of(const data::ChainRun &chain);

/// Whether the values of the round's items add up to more than nothing.
bool has_loot(const data::ChainRound &round);

/// The `round_no` of the fort round with the highest damage dealt, the first among equals; -1 if
/// there is none.
int final_fort_round(const std::vector<data::ChainRound> &rounds);

} // namespace tally::ui
