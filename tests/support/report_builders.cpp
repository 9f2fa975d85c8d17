#include "support/report_builders.h"

#include "data/store/tally_db.h"

#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace tally::test {

using namespace data;

LootEntry item(std::optional<double> type, std::optional<double> subtype,
               std::optional<double> value)
{
    LootEntry entry;
    entry.item_type = type;
    entry.item_subtype = subtype;
    entry.value = value;
    return entry;
}

BattleRound battle_round(std::optional<double> damage_dealt, std::vector<LootEntry> loot)
{
    BattleRound round;
    round.npc_btype = 1.0;
    round.level = 45.0;
    round.damage_dealt = damage_dealt;
    round.loot = std::move(loot);
    return round;
}

BattleReport battle(std::optional<double> start_time, std::vector<BattleRound> rounds)
{
    BattleReport report;
    report.chain_start_time = start_time;
    report.player_id = 77.0;
    report.player_name = QStringLiteral("Ada");
    report.rounds = std::move(rounds);
    return report;
}

FieldReport field_fight(const QStringList &enemy_names)
{
    FieldReport attacks;
    for (const QString &name : enemy_names) {
        const int number = static_cast<int>(attacks.size()) + 1;
        attacks << QVariantMap{{QStringLiteral("attack_id"), static_cast<double>(number)},
                               {QStringLiteral("attack_seq"), number},
                               {QStringLiteral("email_box"), QStringLiteral("Report")},
                               {QStringLiteral("enemy_name"), name}};
    }
    return attacks;
}

TrialParticipant participant(const QString &name, std::vector<LootEntry> loot)
{
    TrialParticipant someone;
    someone.player_name = name;
    someone.loot = std::move(loot);
    return someone;
}

TrialReport trial(std::vector<TrialParticipant> participants)
{
    TrialReport report;
    report.boss_name = QStringLiteral("Baulur");
    report.event_time = 1000.0;
    report.participants = std::move(participants);
    int place = 0;
    for (TrialParticipant &someone : report.participants)
        someone.order_ = ++place;
    return report;
}

FortReport fort(double event_time, std::vector<LootEntry> loot)
{
    FortReport report;
    report.fort_level = 7;
    report.event_time = event_time;
    report.loot = std::move(loot);
    return report;
}

void add_each_kind(TallyDb &db, const QString &name, double time, int size, int items)
{
    std::vector<LootEntry> loot;
    for (int i = 0; i < items; ++i)
        loot.push_back(item(i, size, 1));
    std::vector<TrialParticipant> people;
    QStringList enemies;
    for (int i = 0; i < size; ++i) {
        people.push_back(participant(QStringLiteral("P%1").arg(i), loot));
        enemies << QStringLiteral("E%1").arg(i);
    }
    const auto rounds = static_cast<std::size_t>(size);
    db.insert_report(name, battle(time, std::vector(rounds, battle_round(1.0, loot))), 1.0);
    db.insert_field_report(name, field_fight(enemies), 1.0);
    db.insert_trial_report(name, trial(std::move(people)), 1.0);
    db.insert_fort_report(name, fort(time, loot), 1.0);
}

} // namespace tally::test
