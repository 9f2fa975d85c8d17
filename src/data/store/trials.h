#pragma once

#include "data/master/item_facts.h"
#include "data/store/chain_records.h"
#include "data/store/trial_records.h"

#include <optional>
#include <vector>

namespace tally::data {

class StoreConnection;

// Boss kills; see the members of `TallyDb` of the same names.

std::vector<TrialPlayerRow> trial_players(const StoreConnection &store, const QStringList &bosses,
                                          std::optional<double> from, std::optional<double> to);
std::vector<TrialSession> trial_sessions(const StoreConnection &store, const QStringList &bosses,
                                         std::optional<double> from, std::optional<double> to,
                                         int gap_minutes);
std::vector<LootStat> trial_loot_stats(const StoreConnection &store, const QStringList &bosses,
                                       std::optional<double> from, std::optional<double> to,
                                       const QString &player, int *fights,
                                       const ItemLookup &item_of);
std::vector<SessionPlayer> session_players(const StoreConnection &store, const QStringList &files);
std::vector<PlayerKill> player_kills(const StoreConnection &store, const QStringList &files,
                                     const QString &player);
std::optional<TrialDetail> trial_detail(const StoreConnection &store, const QString &file_name);

} // namespace tally::data
