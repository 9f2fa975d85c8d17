#include "data/mail/battle_report.h"

#include "data/import/battle_file.h"
#include "data/mail/mail_value.h"
#include "mail_encoder.h"
#include "support/hostile_mails.h"
#include "support/print_qt.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace tally;
using namespace tally::sample;
using namespace Qt::StringLiterals;
using data::BattleReport;
using data::BattleRound;
using data::read_loot;
using testing::ElementsAre;

namespace {

/// Knows the barbarians of one type.
std::optional<int> level_of(double npc_type)
{
    return npc_type == 7.0 ? std::optional(17) : std::nullopt;
}

std::optional<BattleReport> battle_in(QByteArrayView mail)
{
    return data::parse_battle(mail, level_of);
}

constexpr double some_time = 1.7e9;

QByteArray battle(const QByteArray &entries)
{
    return mail(entry("type", text("Battle")) + entries);
}

QByteArray fight(double npc_type = 7.0, const QByteArray &facts = {})
{
    return entry("NpcType", number(npc_type)) + facts;
}

QByteArray self_char(const QByteArray &facts)
{
    return entry("SelfChar", map(facts));
}

QByteArray loot_item(double type, double subtype, double value)
{
    return map({entry("Type", number(type)), entry("SubType", number(subtype)),
                entry("Value", number(value))});
}

/// The rounds of a battle mail of these entries; none if it is refused.
std::vector<BattleRound> rounds_of(const QByteArray &entries)
{
    const auto report = battle_in(battle(entries));
    return report ? report->rounds : std::vector<BattleRound>();
}

/// The one round of a battle mail.
BattleRound round_of(const QByteArray &entries)
{
    const auto rounds = rounds_of(entries);
    EXPECT_EQ(rounds.size(), 1U);
    return rounds.empty() ? BattleRound() : rounds.front();
}

BattleReport report_of(const QByteArray &entries)
{
    const auto report = battle_in(battle(entries + fight()));
    EXPECT_TRUE(report);
    return report.value_or(BattleReport());
}

template <typename T>
std::vector<std::optional<double>> each(const std::vector<T> &records,
                                        std::optional<double> T::*field)
{
    std::vector<std::optional<double>> values;
    for (const T &record : records)
        values.push_back(record.*field);
    return values;
}

} // namespace

TEST(BattleReport, RefusesWhatIsNoBattleWithRounds)
{
    EXPECT_FALSE(battle_in({}));
    EXPECT_FALSE(battle_in(battle(entry("NpcBType", number(1)))));
    EXPECT_FALSE(battle_in(battle(entry("NpcType", text("7")))));
    EXPECT_FALSE(battle_in(mail(entry("type", text("battle")) + fight())));
    EXPECT_FALSE(battle_in(mail(fight())));
    EXPECT_FALSE(battle_in(fight() + "no tree"));
    EXPECT_FALSE(data::parse_battle(u"/no/such/file"_s));
    EXPECT_TRUE(battle_in(battle(fight())));
    // The type may stand anywhere; a direct hit counts, even if it is another type.
    const QByteArray head = entry("head", map({entry("type", text("Battle"))}));
    EXPECT_TRUE(battle_in(mail(head + fight())));
    EXPECT_FALSE(battle_in(mail(head + entry("type", number(1)) + fight())));
}

TEST(BattleRounds, FactsBelongToTheAnchorBeforeThemEvenIfThatHasNoNumber)
{
    const auto rounds =
        rounds_of(entry("CtId", number(1)) +
                  fight(7, entry("CtId", number(2)) + entry("DisappearTick", number(1)) +
                               entry("NpcBType", number(9)) + entry("IsFort", text(""))) +
                  fight(8, entry("CtId", number(3)) + entry("DisappearTick", number(2))) +
                  entry("NpcType", text("x")) + entry("CtId", number(5)));
    EXPECT_THAT(each(rounds, &BattleRound::npc_ctid), ElementsAre(2.0, 3.0));
    EXPECT_THAT(each(rounds, &BattleRound::disappear_tick), ElementsAre(1.0, 2.0));
    EXPECT_EQ(rounds.at(0).is_fort_round, 1);
    EXPECT_EQ(rounds.at(1).is_fort_round, 0);
}

TEST(BattleRounds, OnlyTheFirstMarkerOfAFactCounts)
{
    const BattleRound one =
        round_of(fight(8, entry("CtId", text("x")) + entry("CtId", number(5)) +
                              entry("NpcBType", text("x")) + entry("NpcBType", number(5)) +
                              entry("CastleLevel", number(0)) + entry("CastleLevel", number(5))));
    EXPECT_EQ(one.npc_ctid, std::nullopt);
    EXPECT_EQ(one.npc_btype, std::nullopt);
    EXPECT_EQ(one.level, std::nullopt);
}

TEST(BattleRounds, FirstSmallEtsCounts)
{
    const QByteArray seconds = entry("Ets", number(some_time));
    EXPECT_EQ(
        round_of(fight(7, seconds + entry("Ets", number(5000)) + entry("Ets", number(6)))).ets,
        5000.0);
    EXPECT_EQ(round_of(fight(7, entry("Ets", text("x")) + entry("Ets", number(1e7)))).ets,
              std::nullopt);
    EXPECT_EQ(round_of(fight(7, entry("Ets", number(9999999)))).ets, 9999999.0);
}

TEST(BattleRounds, SecondHurtIsTheDamageTakenAndTheFirstDeathTheDamageDealt)
{
    const auto taken = [](const QByteArray &lead_in) {
        return round_of(lead_in + fight()).damage_taken;
    };
    const QByteArray no_number = entry("Hurt", text("x"));
    const QByteArray hundred = entry("Hurt", number(100));
    const QByteArray two_hundred = entry("Hurt", number(200));
    EXPECT_EQ(taken(no_number), std::nullopt);
    EXPECT_EQ(taken(hundred), 100.0);
    EXPECT_EQ(taken(hundred + no_number + two_hundred), 200.0);
    EXPECT_EQ(taken(hundred + two_hundred + entry("Hurt", number(300))), 200.0);
    EXPECT_EQ(round_of(fight() + hundred).damage_taken, std::nullopt);
    const auto rounds =
        rounds_of(entry("Death", text("x")) + entry("Death", number(1)) +
                  entry("Death", number(2)) + fight() + entry("Death", number(3)) + fight());
    EXPECT_THAT(each(rounds, &BattleRound::damage_dealt), ElementsAre(1.0, 3.0));
}

TEST(BattleRounds, SortByEtsThenByDisappearTickWithZeroForWhatIsNoNumber)
{
    const auto nth = [](double number_in_order, double ets, double tick) {
        return fight(number_in_order,
                     entry("Ets", number(ets)) + entry("DisappearTick", number(tick)));
    };
    const auto rounds =
        rounds_of(nth(6, 0, 1) + nth(3, 10, 0) + nth(2, 30, 9) + nth(1, 30, 2) + nth(4, 0, -1) +
                  fight(5) + nth(7, -1, 0) + nth(8, -std::numeric_limits<double>::infinity(), 0));
    EXPECT_THAT(each(rounds, &BattleRound::npc_type), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    QByteArray entries;
    for (int i = 0; i < 40; ++i)
        entries += nth(i, 0, i % 2 == 0 ? std::nan("") : i % 3 - 1.0);
    const auto place = [](const BattleRound &one) {
        return std::isnan(*one.disappear_tick) ? 0.0 : *one.disappear_tick;
    };
    EXPECT_TRUE(std::ranges::is_sorted(rounds_of(entries), {}, place));
}

TEST(BattleRounds, MissingBaseTypeIsThatOfTheFirstSortedRound)
{
    const auto rounds =
        rounds_of(fight(1, entry("Ets", number(1)) + entry("NpcBType", number(5))) + fight(2) +
                  fight(3, entry("Ets", number(2)) + entry("NpcBType", number(6))));
    EXPECT_THAT(each(rounds, &BattleRound::npc_type), ElementsAre(3, 1, 2));
    EXPECT_THAT(each(rounds, &BattleRound::npc_btype), ElementsAre(6, 5, 6));
}

TEST(BattleRounds, LevelComesFromCastleThenTypeThenTableThenMail)
{
    const auto rounds = rounds_of(
        entry("level", number(3)) + fight(150008) + fight(150009) + fight(150050) + fight(150051) +
        fight(7) + fight(8) + fight(150009, entry("CastleLevel", number(25))) +
        fight(150009, entry("CastleLevel", number(-1))) + fight(std::nan("")) + fight(1e300));
    EXPECT_THAT(each(rounds, &BattleRound::level),
                ElementsAre(3.0, 41.0, 82.0, 3.0, 17.0, 3.0, 25.0, 41.0, 3.0, 3.0));
}

TEST(BattleRounds, LootIsThatOfTheFirstMarkerInTheBlock)
{
    const auto loot = [](double value) {
        return entry("NpcKillLoot", array({loot_item(4, 1, value)}));
    };
    const auto rounds = rounds_of(fight(1, loot(10) + loot(11)) + fight(2) + fight(3, loot(30)));
    ASSERT_EQ(rounds.size(), 3U);
    EXPECT_THAT(each(rounds[0].loot, &data::LootEntry::value), ElementsAre(10.0));
    EXPECT_TRUE(rounds[1].loot.empty());
    EXPECT_THAT(each(rounds[2].loot, &data::LootEntry::value), ElementsAre(30.0));
}

TEST(ReadLoot, EntriesMayLackAnythingButABrokenOneEndsTheList)
{
    const QByteArray bytes =
        "x" + array({loot_item(4, 201, 30),
                     map({entry("Type", number(5)), entry("Other", number(1))}), map()});
    const auto loot = read_loot(bytes, 1);
    EXPECT_THAT(each(loot, &data::LootEntry::item_type), ElementsAre(4.0, 5.0, std::nullopt));
    EXPECT_THAT(each(loot, &data::LootEntry::item_subtype),
                ElementsAre(201.0, std::nullopt, std::nullopt));
    EXPECT_THAT(each(loot, &data::LootEntry::value), ElementsAre(30.0, std::nullopt, std::nullopt));
    const QByteArray broken = map({entry("Type", number(5)), entry("Value", text("x"))});
    EXPECT_THAT(each(read_loot(array({loot_item(4, 1, 1), broken, loot_item(6, 1, 1)}), 0),
                     &data::LootEntry::item_type),
                ElementsAre(4.0));
    EXPECT_TRUE(read_loot(map(small_value(1) + loot_item(4, 1, 1)), 0).empty());
    EXPECT_TRUE(read_loot(map(entry(1.0, number(5))), 0).empty());
    EXPECT_TRUE(read_loot("", 0).empty());
    EXPECT_TRUE(read_loot(map(), -1).empty());
}

TEST(BattleReport, RoundsMayShareTheirLootUpToBoundsThatNoMailReaches)
{
    const auto report = battle_in(test::chain_of_shared_loot(100));
    ASSERT_TRUE(report);
    qsizetype entries = 0;
    for (const BattleRound &round : report->rounds)
        entries += static_cast<qsizetype>(round.loot.size());
    EXPECT_EQ(entries, 100 * 101 / 2) << "each round has its loot and that of all that follow";

    const std::pair<QByteArray, const char *> oversized[] = {
        {test::chain_of_shared_loot(800), "more than 300000 loot entries"},
        {test::chain_of_shared_loot(5'000), "more than 4096 loot entries in a round"},
        {test::chain_of_endless_entries(100), "more than 64 numbers in a loot entry"},
        {test::chain_of_rounds(100'001), "more than 100000 rounds"},
    };
    for (const auto &[mail, reason] : oversized) {
        try {
            battle_in(mail);
            ADD_FAILURE() << "is read, and should have " << reason;
        } catch (const data::OversizedMail &refusal) {
            EXPECT_STREQ(refusal.what(), reason);
        }
    }
}

TEST(BattleReport, ResultAndTimeAreFoundInTheTree)
{
    const BattleReport report = report_of(
        entry("deep", map({entry("result", small_value(1)), entry("time", number(1.7e15))})));
    EXPECT_EQ(report.result, 1.0);
    EXPECT_EQ(report.report_time, 1.7e15);
    EXPECT_EQ(report_of(entry("result", text("won"))).result, std::nullopt);
    EXPECT_EQ(report_of(entry("result", text("2"))).result, 2.0);
    EXPECT_EQ(report_of(entry("result", map())).result, std::nullopt);
}

TEST(BattleReport, ChainTimesComeFromBtsAndTimeElseFromOtherTimes)
{
    const QByteArray start = entry("Bts", number(some_time)) + entry("Bts", number(some_time + 9));
    const QByteArray end = entry("time", number((some_time + 60.5) * 1e6));
    const QByteArray others = entry("Time", number(some_time + 200)) + entry("Time", number(1000)) +
                              entry("Time", number(3e9)) + entry("Time", number(some_time + 100)) +
                              entry("Time", text("x"));
    // One that is there but wrong is dropped only afterwards.
    const QByteArray wrong = entry("Bts", number(1000)) + entry("time", number(std::nan("")));
    using Time = std::optional<double>;
    const std::tuple<QByteArray, Time, Time> mails[] = {
        {start + end + others, some_time, some_time + 60.5},
        {others, some_time + 100, some_time + 200},
        {start + others, some_time, some_time + 200},
        {wrong + others, std::nullopt, std::nullopt},
        {{}, std::nullopt, std::nullopt}};
    for (const auto &[entries, start_time, end_time] : mails) {
        const BattleReport report = report_of(entries);
        EXPECT_EQ(report.chain_start_time, start_time);
        EXPECT_EQ(report.chain_end_time, end_time);
    }
}

TEST(BattleReport, PlayerIsTheFirstBehindSelfChar)
{
    const BattleReport report = report_of(
        entry("PId", number(1)) +
        self_char(entry("HId2", number(22)) + entry("HId", number(11)) + entry("PId", number(77)) +
                  entry("PName", text("Ada \xf0\x9f\x90\xba")) + entry("AName", text("Wolves"))) +
        self_char(entry("PId", number(5))));
    EXPECT_EQ(report.hero_id_1, 11.0);
    EXPECT_EQ(report.hero_id_2, 22.0);
    EXPECT_EQ(report.player_id, 77.0);
    EXPECT_EQ(report.player_name, u"Ada 🐺");
    EXPECT_EQ(report.alliance_name, u"Wolves");
}

TEST(BattleReport, FactsOutOfReachAreNotThePlayers)
{
    // The map's tag and the marker of the filling in front, the end of the own marker at the edge.
    const auto with_key_ending_at = [](qsizetype reach, const QByteArray &key,
                                       const QByteArray &value) {
        const qsizetype filling = reach - 1 - entry("x", text("")).size() - text(key).size();
        return report_of(self_char(entry("x", text(QByteArray(filling, 'x'))) + entry(key, value)));
    };
    EXPECT_EQ(with_key_ending_at(20000, "HId", number(5)).hero_id_1, 5.0);
    EXPECT_EQ(with_key_ending_at(20001, "HId", number(5)).hero_id_1, std::nullopt);
    EXPECT_EQ(with_key_ending_at(20480, "PName", text("Ada")).player_name, u"Ada");
    EXPECT_EQ(with_key_ending_at(20481, "PName", text("Ada")).player_name, u"");
    // Heroes need a map behind the word, the player does not.
    const BattleReport mapless = report_of(entry("SelfChar", small_value(1)) +
                                           entry("HId", number(11)) + entry("PId", number(77)));
    EXPECT_EQ(mapless.hero_id_1, std::nullopt);
    EXPECT_EQ(mapless.player_id, 77.0);
    EXPECT_FALSE(battle_in(battle(fight()) + text("SelfChar"))->player_id);
}

TEST(BattleReport, NamesOfMoreThan200BytesAreDropped)
{
    const auto name = [](const QByteArray &value) {
        return report_of(self_char(entry("PName", value) + entry("AName", text("W")))).player_name;
    };
    EXPECT_EQ(name(text(QByteArray(200, 'x'))).size(), 200);
    EXPECT_EQ(name(text(QByteArray(201, 'x'))), u"");
    EXPECT_EQ(name(number(5)), u"");
}

TEST(BattleReport, AnyRallyTextMayEndWithSquareRally)
{
    const auto rally = [](const QByteArray &value) {
        return entry("IsRally", value);
    };
    EXPECT_TRUE(report_of(rally(small_value(1)) + rally(text("no")) + rally(text("aSquareRally")))
                    .is_square_rally);
    EXPECT_TRUE(report_of(rally(text(QByteArray(245, 'x') + "SquareRally"))).is_square_rally);
    EXPECT_FALSE(report_of(rally(text(QByteArray(246, 'x') + "SquareRally"))).is_square_rally);
    EXPECT_FALSE(report_of(rally(text("SquareRally2"))).is_square_rally);
    EXPECT_FALSE(report_of(rally(text("squarerally"))).is_square_rally);
}

TEST(BattleReport, MailCutAnywhereIsNoReport)
{
    const QByteArray whole = battle(
        entry("Bts", number(some_time)) +
        self_char(entry("HId", number(1)) + entry("PName", text("Ada"))) +
        entry("IsRally", text("SquareRally")) + entry("Hurt", number(1)) +
        fight(7, entry("Ets", number(1)) + entry("NpcKillLoot", array({loot_item(1, 2, 3)}))));
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(battle_in(QByteArray(whole.constData(), size)));
    // Behind the tree the same bytes are searched, too, though not decoded.
    for (qsizetype size = 0; size < whole.size(); ++size) {
        const QByteArray mail = battle(fight()) + whole.first(size);
        EXPECT_TRUE(battle_in(QByteArray(mail.constData(), mail.size())));
    }
}
