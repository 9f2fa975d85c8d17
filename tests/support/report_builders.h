#pragma once

#include "data/mail/battle_report.h"
#include "data/mail/field_report.h"
#include "data/mail/fort_report.h"
#include "data/mail/trial_report.h"

#include <vector>

namespace tally::data {
class TallyDb;
}

namespace tally::test {

/// Reports in a line, for tests that care about few of their fields. All times and ids that are not
/// given have fixed values.

data::LootEntry item(std::optional<double> type, std::optional<double> subtype,
                     std::optional<double> value);
data::BattleRound battle_round(std::optional<double> damage_dealt,
                               std::vector<data::LootEntry> loot = {});
data::BattleReport battle(std::optional<double> start_time, std::vector<data::BattleRound> rounds);
/// Attacks numbered from 1 with the enemies' names.
data::FieldReport field_fight(const QStringList &enemy_names);
data::TrialParticipant participant(const QString &name, std::vector<data::LootEntry> loot = {});
data::TrialReport trial(std::vector<data::TrialParticipant> participants);
data::FortReport fort(double event_time, std::vector<data::LootEntry> loot = {});
/// Stores a report of each kind under one name. All have `size` children (rounds, attacks,
/// participants), of which each has `items` items; so has the fort.
void add_each_kind(data::TallyDb &db, const QString &name, double time, int size, int items);

} // namespace tally::test
