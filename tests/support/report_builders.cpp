#include "support/report_builders.h"

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

} // namespace tally::test
