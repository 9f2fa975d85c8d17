#pragma once

#include "data/store/chain_records.h"

#include <QString>

#include <set>
#include <tuple>
#include <vector>

namespace tally::ui {

struct RoundKey {
    QString file_name;
    int round_no = 0;

    friend bool operator<(const RoundKey &a, const RoundKey &b)
    {
        return std::tie(a.file_name, a.round_no) < std::tie(b.file_name, b.round_no);
    }
};

/// Rounds whose barbarian was met more than once.
struct RoundKeys {
    std::set<RoundKey> free;     ///< won, after an earlier round without loot
    std::set<RoundKey> tactical; ///< without loot, but met again later
};

/// Follows each barbarian through all rounds, in the order of the chains' start times; a chain
/// without one comes first.
RoundKeys round_keys(const std::vector<data::ChainRun> &chains);

/// Whether the values of the round's items add up to more than nothing.
bool has_loot(const data::ChainRound &round);

/// The `round_no` of the chain's fort round with the highest damage dealt, the first among equals;
/// -1 if it has none.
int final_fort_round(const data::ChainRun &chain);

} // namespace tally::ui
