#pragma once

#include "data/store/chain_records.h"

#include <QSqlDatabase>

#include <optional>
#include <vector>

namespace tally::test {

/// The statistics of chains by the texts that define them, over all rounds and their loot. Items
/// come in no order, and their facts keep their defaults.

data::ChainSummary specified_summary(const QSqlDatabase &db, const data::ChainQuestion &question);
std::optional<data::BestChain> specified_best_chain(const QSqlDatabase &db,
                                                    const data::ChainQuestion &question);
std::vector<data::LootStat> specified_loot_stats(const QSqlDatabase &db,
                                                 const data::ChainQuestion &question);
int specified_honor_since(const QSqlDatabase &db, double since);

} // namespace tally::test
