#pragma once

#include "data/store/chain_records.h"
#include "ui/chains/chain_filter.h"
#include "ui/parts/player_entries.h"

#include <QString>

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

/// What the page asks for, with the player who is chosen now: he stays if his account still exists.
struct ChainPageQuestion {
    ChainFilter filter;
    QString player_text; ///< his entry; empty before the first choice
    QString mail_folder; ///< of the settings; empty if there is none
};

/// What there is where no chain fits the filter.
struct ChainGap {
    bool has_mail_folder = true;
    std::optional<double> last_chain; ///< of the filter's player, in whatever period
};

/// What the store tells about chains. A part whose query failed is absent.
struct ChainFigures {
    ChainFilter filter; ///< as asked, with the chosen player
    std::optional<std::vector<PlayerEntry>> players;
    std::size_t chosen_player = 0;
    std::optional<data::ChainSummary> summary;
    std::optional<ChainGap> gap; ///< only if the summary counts no chain
    std::optional<std::optional<data::BestChain>> best_in_filter;
    std::optional<std::optional<data::BestChain>> best_overall;
    std::optional<std::array<int, 24>> hourly;
    std::optional<std::vector<data::LootStat>> loot; ///< what drops most often first
    std::optional<std::vector<data::HeroPair>> hero_pairs;
};

/// Asks one query after the other; never throws.
/// \param is_outdated asked between the queries: what it ends early is of no use
ChainFigures chain_figures(const data::TallyDb &db, const ChainPageQuestion &question,
                           const std::function<bool()> &is_outdated);

/// Loot in the order of the table, with the names that have arrived since it was counted.
std::vector<data::LootStat> loot_rows(std::vector<data::LootStat> rows);

} // namespace tally::ui
