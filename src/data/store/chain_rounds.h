#pragma once

#include "data/master/item_facts.h"
#include "data/store/chain_records.h"

#include <map>
#include <optional>
#include <vector>

namespace tally::data {

class StoreConnection;

// Chains with their rounds, read from the tables of reports and loot.

std::vector<ChainRun> chains_for_pair(const StoreConnection &store, int hero_1, int hero_2,
                                      const ChainQuestion &question, const ItemLookup &item_of);
/// The rounds of a chain in their order, with the items' facts.
std::vector<ChainRound> rounds_of(const StoreConnection &store, const QString &file_name,
                                  const ItemLookup &item_of);
std::optional<FortOfChain> fort_of_chain(const StoreConnection &store, const QString &file_name);
/// The loot of a chain by its rounds, without the items' facts.
std::map<int, std::vector<LootEntry>> round_loot(const StoreConnection &store,
                                                 const QString &file_name);

} // namespace tally::data
