#pragma once

#include "data/master/item_facts.h"
#include "data/store/chain_records.h"
#include "data/store/records.h"

#include <array>
#include <optional>
#include <vector>

namespace tally::data {

class StoreConnection;

// The statistics of chains, read from their slices (slice_upkeep.h). What they mean stands with the
// members of `TallyDb` of the same names.

ChainSummary summary(const StoreConnection &store, const ChainQuestion &question);
std::optional<BestChain> best_chain(const StoreConnection &store, const ChainQuestion &question);
std::optional<double> last_chain(const StoreConnection &store, const ChainQuestion &question);
std::vector<LootStat> loot_stats(const StoreConnection &store, const ChainQuestion &question,
                                 const ItemLookup &item_of);
std::array<int, 24> hourly(const StoreConnection &store, const ChainQuestion &question);
std::vector<HeroPair> hero_pairs(const StoreConnection &store, const ChainQuestion &question);
std::vector<PlayerRow> players(const StoreConnection &store);
int honor_since(const StoreConnection &store, double since);
/// What it runs, for those who ask for its plan.
QString honor_since_statement();
int chain_file_count(const StoreConnection &store);
int report_count(const StoreConnection &store, std::optional<double> btype);

} // namespace tally::data
