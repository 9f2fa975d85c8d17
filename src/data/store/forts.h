#pragma once

#include "data/master/item_facts.h"
#include "data/store/chain_records.h"
#include "data/store/trial_records.h"

#include <optional>
#include <vector>

namespace tally::data {

class StoreConnection;

// Forts; see the members of `TallyDb` of the same names.

std::vector<FortRow> fort_list(const StoreConnection &store, std::optional<double> from,
                               std::optional<double> to, int min_level, int limit);
std::vector<LootStat> fort_loot_stats(const StoreConnection &store, std::optional<double> from,
                                      std::optional<double> to, int min_level, int *fights,
                                      const ItemLookup &item_of);
std::optional<FortBattle> fort_battle(const StoreConnection &store, const QString &file_name);

} // namespace tally::data
