#pragma once

#include "data/store/chain_records.h"

#include <QSqlQuery>

#include <optional>
#include <vector>

namespace tally::data {

/// All loot of one item, as the store knows it.
struct LootSum {
    std::optional<double> item_type;
    std::optional<double> item_subtype;
    double pieces = 0.0;
    qint64 battles = 0;
};

/// Reads rows of item type, item subtype, sum and count.
std::vector<LootSum> read_loot_sums(QSqlQuery &rows);

/// Adds what the reference tables know about the items at this moment.
std::vector<LootStat> loot_stats_of(const std::vector<LootSum> &sums);

/// Reads an item from three columns of a row.
LootEntry read_loot_entry(const QSqlQuery &row, int first_column = 0);

} // namespace tally::data
