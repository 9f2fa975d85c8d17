#include "mail/battle_report.h"

#include "mail_encoder.h"
#include "master/master_cache.h"
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

std::optional<BattleReport> battle_in(QByteArrayView mail)
{
    return data::parse_battle(mail);
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

class BattleReportTest : public testing::Test {
protected:
    void SetUp() override { data::MasterCache::instance().clear(); }
    void TearDown() override { data::MasterCache::instance().clear(); }
};

using BattleRounds = BattleReportTest;

} // namespace

TEST_F(BattleReportTest, RefusesWhatIsNoBattleWithRounds)
{
    EXPECT_FALSE(battle_in(QByteArrayView()));
    EXPECT_FALSE(battle_in(battle(entry("NpcBType", number(1)))));
    EXPECT_FALSE(battle_in(battle(entry("NpcType", text("7")))));
    EXPECT_FALSE(battle_in(mail(entry("type", text("battle")) + fight())));
    EXPECT_FALSE(battle_in(mail(fight())));
    EXPECT_FALSE(battle_in(fight() + "no tree"));
    EXPECT_FALSE(data::parse_battle(u"/no/such/file"_s));
    EXPECT_TRUE(battle_in(battle(fight())));
}

TEST_F(BattleReportTest, TypeMayStandAnywhereInTheTree)
{
    EXPECT_TRUE(battle_in(mail(entry("head", map({entry("type", text("Battle"))})) + fight())));
    // The direct hit counts, even if it is another type.
    EXPECT_FALSE(battle_in(mail(entry("head", map({entry("type", text("Battle"))})) +
                                entry("type", number(1)) + fight())));
}

TEST_F(BattleRounds, AnchorWithoutNumberEndsTheBlockBeforeIt)
{
    const BattleRound only = round_of(fight(7) + entry("NpcType", text("x")) +
                                      entry("CtId", number(5)) + entry("IsFort", small_value(1)));
    EXPECT_EQ(only.npc_type, 7.0);
    EXPECT_EQ(only.npc_ctid, std::nullopt);
    EXPECT_EQ(only.is_fort_round, 0);
}

TEST_F(BattleRounds, FactsBelongToTheAnchorBeforeThem)
{
    const auto rounds =
        rounds_of(entry("CtId", number(1)) +
                  fight(7, entry("CtId", number(2)) + entry("DisappearTick", number(1)) +
                               entry("NpcBType", number(9)) + entry("IsFort", text(""))) +
                  fight(8, entry("CtId", number(3)) + entry("DisappearTick", number(2))));
    EXPECT_THAT(each(rounds, &BattleRound::npc_ctid), ElementsAre(2.0, 3.0));
    EXPECT_THAT(each(rounds, &BattleRound::disappear_tick), ElementsAre(1.0, 2.0));
    EXPECT_EQ(rounds.at(0).is_fort_round, 1);
    EXPECT_EQ(rounds.at(1).is_fort_round, 0);
}

TEST_F(BattleRounds, OnlyTheFirstMarkerOfAFactCounts)
{
    const BattleRound one =
        round_of(fight(7, entry("CtId", text("x")) + entry("CtId", number(5)) +
                              entry("NpcBType", text("x")) + entry("NpcBType", number(5)) +
                              entry("CastleLevel", number(0)) + entry("CastleLevel", number(5))));
    EXPECT_EQ(one.npc_ctid, std::nullopt);
    EXPECT_EQ(one.npc_btype, std::nullopt);
    EXPECT_EQ(one.level, std::nullopt);
}

TEST_F(BattleRounds, FirstSmallEtsCounts)
{
    const QByteArray seconds = entry("Ets", number(some_time));
    EXPECT_EQ(
        round_of(fight(7, seconds + entry("Ets", number(5000)) + entry("Ets", number(6)))).ets,
        5000.0);
    EXPECT_EQ(round_of(fight(7, entry("Ets", text("x")) + entry("Ets", number(1e7)))).ets,
              std::nullopt);
    EXPECT_EQ(round_of(fight(7, entry("Ets", number(9999999)))).ets, 9999999.0);
}

TEST_F(BattleRounds, SecondHurtIsTheDamageTaken)
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
}

TEST_F(BattleRounds, FirstDeathNumberIsTheDamageDealt)
{
    const auto rounds =
        rounds_of(entry("Death", text("x")) + entry("Death", number(1)) +
                  entry("Death", number(2)) + fight() + entry("Death", number(3)) + fight());
    EXPECT_THAT(each(rounds, &BattleRound::damage_dealt), ElementsAre(1.0, 3.0));
}

TEST_F(BattleRounds, SortByEtsThenByDisappearTick)
{
    const auto nth = [](double number_in_order, const QByteArray &ets, const QByteArray &tick) {
        return fight(number_in_order, ets + tick);
    };
    const auto ets = [](double value) {
        return entry("Ets", number(value));
    };
    const auto tick = [](double value) {
        return entry("DisappearTick", number(value));
    };
    const auto rounds =
        rounds_of(nth(5, {}, tick(1)) + nth(3, ets(10), {}) + nth(2, ets(30), tick(9)) +
                  nth(1, ets(30), tick(2)) + nth(4, {}, {}) + nth(6, ets(-1), {}) +
                  nth(7, ets(-std::numeric_limits<double>::infinity()), {}));
    EXPECT_THAT(each(rounds, &BattleRound::npc_type), ElementsAre(1, 2, 3, 4, 5, 6, 7));
}

TEST_F(BattleRounds, NoNumberSortsAsZero)
{
    const auto tick = [](double value) {
        return entry("DisappearTick", number(value));
    };
    QByteArray entries;
    for (int i = 0; i < 40; ++i)
        entries += fight(i, tick(i % 2 == 0 ? std::nan("") : i % 3 - 1.0));
    const auto rounds = rounds_of(entries);
    ASSERT_EQ(rounds.size(), 40U);
    for (size_t i = 1; i < rounds.size(); ++i) {
        const auto place = [](const BattleRound &one) {
            return std::isnan(*one.disappear_tick) ? 0.0 : *one.disappear_tick;
        };
        EXPECT_LE(place(rounds[i - 1]), place(rounds[i]));
    }
}

TEST_F(BattleRounds, MissingBaseTypeIsThatOfTheFirstSortedRound)
{
    const auto rounds =
        rounds_of(fight(1, entry("Ets", number(1)) + entry("NpcBType", number(5))) + fight(2) +
                  fight(3, entry("Ets", number(2)) + entry("NpcBType", number(6))));
    EXPECT_THAT(each(rounds, &BattleRound::npc_type), ElementsAre(3, 1, 2));
    EXPECT_THAT(each(rounds, &BattleRound::npc_btype), ElementsAre(6, 5, 6));
}

TEST_F(BattleRounds, LevelComesFromCastleThenTypeThenTableThenMail)
{
    data::MasterCache::instance().load_json(u"barbs"_s, R"({"types": [
        {"npc_type_min": 7, "npc_type_max": 7, "name": "Seven", "level_offset": 10}]})");
    const auto rounds = rounds_of(
        entry("level", number(3)) + fight(150008) + fight(150009) + fight(150050) + fight(150051) +
        fight(7) + fight(8) + fight(150009, entry("CastleLevel", number(25))) +
        fight(150009, entry("CastleLevel", number(-1))) + fight(std::nan("")) + fight(1e300));
    EXPECT_THAT(each(rounds, &BattleRound::level),
                ElementsAre(3.0, 41.0, 82.0, 3.0, 17.0, 3.0, 25.0, 41.0, 3.0, 3.0));
}

TEST_F(BattleRounds, LootIsThatOfTheFirstMarkerInTheBlock)
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

TEST(ReadLoot, EntriesMayLackAnything)
{
    const QByteArray bytes =
        "x" + array({loot_item(4, 201, 30),
                     map({entry("Type", number(5)), entry("Other", number(1))}), map()});
    const auto loot = read_loot(bytes, 1);
    EXPECT_THAT(each(loot, &data::LootEntry::item_type), ElementsAre(4.0, 5.0, std::nullopt));
    EXPECT_THAT(each(loot, &data::LootEntry::item_subtype),
                ElementsAre(201.0, std::nullopt, std::nullopt));
    EXPECT_THAT(each(loot, &data::LootEntry::value), ElementsAre(30.0, std::nullopt, std::nullopt));
}

TEST(ReadLoot, BrokenEntryIsDroppedAndEndsTheList)
{
    const QByteArray broken = map({entry("Type", number(5)), entry("Value", text("x"))});
    EXPECT_THAT(each(read_loot(array({loot_item(4, 1, 1), broken, loot_item(6, 1, 1)}), 0),
                     &data::LootEntry::item_type),
                ElementsAre(4.0));
    EXPECT_TRUE(read_loot(map(small_value(1) + loot_item(4, 1, 1)), 0).empty());
    EXPECT_TRUE(read_loot(map(entry(1.0, number(5))), 0).empty());
    EXPECT_TRUE(read_loot(number(1), 0).empty());
    EXPECT_TRUE(read_loot("", 0).empty());
    EXPECT_TRUE(read_loot(map(), -1).empty());
}

TEST(ReadLoot, CutAnywhereKeepsTheCompleteEntries)
{
    const QByteArray whole = array({loot_item(4, 1, 1), loot_item(5, 1, 1)});
    const auto is_complete = [](const data::LootEntry &item) {
        return item.value.has_value();
    };
    std::ptrdiff_t complete = 0;
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        const auto loot = read_loot(QByteArray(whole.constData(), size), 0);
        const auto now_complete = std::count_if(loot.begin(), loot.end(), is_complete);
        EXPECT_GE(now_complete, complete);
        complete = now_complete;
    }
    EXPECT_EQ(complete, 2);
}

TEST_F(BattleReportTest, ResultAndTimeAreFoundInTheTree)
{
    const BattleReport report = report_of(
        entry("deep", map({entry("result", small_value(1)), entry("time", number(1.7e15))})));
    EXPECT_EQ(report.result, 1.0);
    EXPECT_EQ(report.report_time, 1.7e15);
    EXPECT_EQ(report_of(entry("result", text("won"))).result, std::nullopt);
    EXPECT_EQ(report_of(entry("result", text("2"))).result, 2.0);
    EXPECT_EQ(report_of(entry("result", map())).result, std::nullopt);
}

TEST_F(BattleReportTest, ChainTimesComeFromBtsAndTime)
{
    const BattleReport report = report_of(
        entry("Bts", number(some_time)) + entry("Bts", number(some_time + 9)) +
        entry("time", number((some_time + 60.5) * 1e6)) + entry("Time", number(some_time + 100)));
    EXPECT_EQ(report.chain_start_time, some_time);
    EXPECT_EQ(report.chain_end_time, some_time + 60.5);
}

TEST_F(BattleReportTest, MissingChainTimesComeFromOtherTimes)
{
    const QByteArray times = entry("Time", number(1700000200)) + entry("Time", number(1000)) +
                             entry("Time", number(3e9)) + entry("Time", number(1700000100)) +
                             entry("Time", text("x"));
    const BattleReport both = report_of(times);
    EXPECT_EQ(both.chain_start_time, 1700000100.0);
    EXPECT_EQ(both.chain_end_time, 1700000200.0);
    const BattleReport end_only = report_of(entry("Bts", number(1600000000)) + times);
    EXPECT_EQ(end_only.chain_start_time, 1600000000.0);
    EXPECT_EQ(end_only.chain_end_time, 1700000200.0);
    // One that is there but wrong is dropped only afterwards.
    const BattleReport wrong =
        report_of(entry("Bts", number(1000)) + entry("time", number(std::nan(""))) + times);
    EXPECT_EQ(wrong.chain_start_time, std::nullopt);
    EXPECT_EQ(wrong.chain_end_time, std::nullopt);
    EXPECT_EQ(report_of({}).chain_end_time, std::nullopt);
}

TEST_F(BattleReportTest, PlayerIsTheFirstBehindSelfChar)
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

TEST_F(BattleReportTest, HeroesNeedAMapButThePlayerDoesNot)
{
    const BattleReport report = report_of(entry("SelfChar", small_value(1)) +
                                          entry("HId", number(11)) + entry("PId", number(77)));
    EXPECT_EQ(report.hero_id_1, std::nullopt);
    EXPECT_EQ(report.player_id, 77.0);
    EXPECT_FALSE(battle_in(battle(fight()) + text("SelfChar"))->player_id);
}

TEST_F(BattleReportTest, FactsOutOfReachAreNotThePlayers)
{
    // The map's tag and the marker of the filling in front, the end of the own marker at the edge.
    const auto with_key_ending_at = [](qsizetype reach, const QByteArray &key,
                                       const QByteArray &value) {
        const qsizetype filling = reach - 1 - entry("x", text("")).size() - text(key).size();
        return report_of(self_char(entry("x", text(QByteArray(filling, 'x'))) + entry(key, value)));
    };
    EXPECT_EQ(with_key_ending_at(20000, "HId", number(5)).hero_id_1, 5.0);
    EXPECT_EQ(with_key_ending_at(20001, "HId", number(5)).hero_id_1, std::nullopt);
    EXPECT_EQ(with_key_ending_at(20480, "PId", number(5)).player_id, 5.0);
    EXPECT_EQ(with_key_ending_at(20481, "PId", number(5)).player_id, std::nullopt);
    EXPECT_EQ(with_key_ending_at(20480, "PName", text("Ada")).player_name, u"Ada");
    EXPECT_EQ(with_key_ending_at(20481, "PName", text("Ada")).player_name, u"");
}

TEST_F(BattleReportTest, NamesOfMoreThan200BytesAreDropped)
{
    const auto named = [](const QByteArray &value) {
        return report_of(self_char(entry("PName", value) + entry("AName", text("W"))));
    };
    EXPECT_EQ(named(text(QByteArray(200, 'x'))).player_name.size(), 200);
    EXPECT_EQ(named(text(QByteArray(201, 'x'))).player_name, u"");
    EXPECT_EQ(named(number(5)).player_name, u"");
    EXPECT_EQ(named(number(5)).alliance_name, u"W");
}

TEST_F(BattleReportTest, AnyRallyTextMayEndWithSquareRally)
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

TEST_F(BattleReportTest, MailCutAnywhereIsNoReport)
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
