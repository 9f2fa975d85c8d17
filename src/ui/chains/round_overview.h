#pragma once

#include "data/store/chain_records.h"
#include "ui/chains/encounters.h"
#include "ui/chains/round_look.h"

#include <QString>

#include <map>
#include <optional>
#include <vector>

namespace tally::ui {

/// What a chain shows besides its head.
struct ChainRounds {
    std::vector<data::ChainRound> rounds; ///< in their order
    std::optional<data::FortOfChain> fort;
};

/// The chains of a pair of heroes with all that is to be shown of them. Chains keep their order,
/// newest first; the rows of a chain are its rounds from the last to the first. All heads are known
/// from the start, the rounds of a chain once they were set.
class RoundOverview {
public:
    /// \param heads newest first
    explicit RoundOverview(std::vector<data::ChainHead> heads);
    /// All rounds are known.
    /// \param forts the fort of each chain, in the same order; missing ones are none
    RoundOverview(std::vector<data::ChainRun> chains,
                  std::vector<std::optional<data::FortOfChain>> forts);

    void set_rounds(size_t chain, ChainRounds rounds);
    /// Of all chains but those from `first` to before `last`.
    void forget_rounds_outside(size_t first, size_t last);
    bool knows_rounds(size_t chain) const { return known_.contains(chain); }

    size_t chain_count() const { return heads_.size(); }
    const data::ChainHead &head(size_t chain) const { return heads_[chain]; }
    /// The headline over all chains.
    QString banner(const QString &hero_name_1, const QString &hero_name_2) const;
    /// The headline of one chain, the newest with the highest number.
    QString chain_head(size_t chain) const;

    /// 0 as long as the rounds are not known.
    size_t row_count(size_t chain) const;
    RoundLook row(size_t chain, size_t row) const;
    /// How many rewards the row shows.
    size_t reward_count(size_t chain, size_t row) const;
    /// How many rows show any, as far as the head tells.
    size_t rows_with_rewards(size_t chain) const;

private:
    struct Known {
        ChainRounds rounds;
        std::vector<Meeting> meetings; ///< one a round
        int final_fort_round = -1;
    };

    bool is_destroyed(const Known &known, const data::ChainRound &round) const;
    int number_of(size_t chain) const { return static_cast<int>(heads_.size() - chain); }

    std::vector<data::ChainHead> heads_;
    Encounters encounters_;
    std::map<size_t, Known> known_;
};

/// \param seconds shown without their fraction; "?" if missing or not above 0
QString chain_duration_text(std::optional<double> seconds);
QString chain_head_text(int number, const data::ChainHead &chain);
/// The start with its date, UTC; empty if there is none.
QString chain_date_text(const data::ChainHead &chain);

} // namespace tally::ui
