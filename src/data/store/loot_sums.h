#pragma once

#include "data/master/item_facts.h"
#include "data/store/chain_records.h"

#include <QSqlQuery>

#include <optional>
#include <vector>

namespace tally::data {

class StoreConnection;
struct SqlConditions;

/// All loot of one item, as the store knows it.
struct LootSum {
    std::optional<double> item_type;
    std::optional<double> item_subtype;
    double pieces = 0.0;
    qint64 battles = 0;
};

/// The loot that the text `sql` sums up, remembered. Both texts have %1 in the place of their
/// conditions. `fights`, if it is not null, gets what `count` gives on the same state of the store.
std::vector<LootStat> remembered_loot(const StoreConnection &store, const QString &sql,
                                      const QString &count, const SqlConditions &conditions,
                                      int *fights, const ItemLookup &item_of);

/// Adds what is known about the items.
std::vector<LootStat> loot_stats_of(const std::vector<LootSum> &sums, const ItemLookup &item_of);

/// Reads an item from three columns of a row.
LootEntry read_loot_entry(const QSqlQuery &row, int first_column = 0);

} // namespace tally::data
