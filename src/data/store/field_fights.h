#pragma once

#include "data/store/field_records.h"
#include "data/store/records.h"

#include <QVariantList>
#include <QVariantMap>

#include <optional>
#include <vector>

namespace tally::data {

class StoreConnection;

// Field fights; see the members of `TallyDb` of the same names.

QVariantList field_attacks(const StoreConnection &store, std::optional<double> from,
                           std::optional<double> to, std::optional<double> player, int limit,
                           int mode);
FieldSummary field_summary(const StoreConnection &store, std::optional<double> from,
                           std::optional<double> to, std::optional<double> player, int mode);
std::optional<QVariantMap> field_attack(const StoreConnection &store, const QString &file_name,
                                        std::optional<double> attack_id);
std::vector<PlayerRow> field_players(const StoreConnection &store);
int field_report_count(const StoreConnection &store);
std::vector<EnemyCount> top_enemies(const StoreConnection &store, int limit);
void set_field_favorite(const StoreConnection &store, const QString &file_name, bool favorite);
bool is_field_favorite(const StoreConnection &store, const QString &file_name);

} // namespace tally::data
