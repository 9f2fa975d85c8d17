#pragma once

#include "data/store/chain_records.h"
#include "ui/chains/round_keys.h"
#include "ui/chains/round_look.h"

#include <QString>

#include <optional>
#include <vector>

namespace tally::ui {

/// The chains of a pair of heroes with all that is to be shown of them. Chains keep their order,
/// newest first; the rows of a chain are its rounds from the last to the first.
class RoundOverview {
public:
    /// \param chains newest first
    /// \param forts the fort of each chain, in the same order; missing ones are none
    RoundOverview(std::vector<data::ChainRun> chains,
                  std::vector<std::optional<data::FortOfChain>> forts);

    size_t chain_count() const { return chains_.size(); }
    size_t row_count(size_t chain) const { return chains_[chain].rounds.size(); }
    /// The headline over all chains.
    QString banner(const QString &hero_name_1, const QString &hero_name_2) const;
    /// The headline of one chain, the newest with the highest number.
    QString chain_head(size_t chain) const;
    RoundLook row(size_t chain, size_t row) const;
    /// How many rewards the row shows.
    size_t reward_count(size_t chain, size_t row) const;

private:
    const data::ChainRound &round_at(size_t chain, size_t row) const;
    bool is_destroyed(size_t chain, const data::ChainRound &round) const;
    int number_of(size_t chain) const { return static_cast<int>(chains_.size() - chain); }

    std::vector<data::ChainRun> chains_;
    std::vector<std::optional<data::FortOfChain>> forts_; ///< one a chain
    std::vector<int> final_fort_rounds_;                  ///< one a chain
    RoundKeys keys_;
};

/// \param seconds shown without their fraction; "?" if missing or not above 0
QString chain_duration_text(std::optional<double> seconds);
QString chain_head_text(int number, const data::ChainRun &chain);

} // namespace tally::ui
