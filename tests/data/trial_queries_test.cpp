#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <map>
#include <random>
#include <set>
#include <thread>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

data::TrialReport kill(const QString &boss, double time,
                       std::vector<data::TrialParticipant> participants)
{
    auto report = trial(std::move(participants));
    report.boss_name = boss;
    report.event_time = time;
    return report;
}

data::TrialParticipant fighter(const QString &name, double id, double rate,
                               std::vector<data::LootEntry> loot = {})
{
    auto someone = participant(name, std::move(loot));
    someone.player_id = id;
    someone.damage_rate = rate;
    return someone;
}

struct RandomTrials : TempStore {
    explicit RandomTrials(unsigned seed)
    {
        std::mt19937 random(seed);
        const auto below = [&random](unsigned end) {
            return static_cast<int>(random() % end);
        };
        for (int number = 0; number < 50; ++number) {
            std::vector<data::TrialParticipant> fighters;
            for (int place = below(4); place > 0; --place) {
                std::vector<data::LootEntry> loot;
                for (int items = below(4); items > 0; --items)
                    loot.push_back(item(1 + below(2), 10 + below(2), below(5) - 1));
                fighters.push_back(fighter(QStringList{u"Ada"_s, u"Bob"_s, u" "_s}[below(3)],
                                           100.0 + below(3), 0.5, std::move(loot)));
            }
            const auto report =
                kill(QStringList{u"Baulur"_s, u"Kaharak"_s}[below(2)], 60.0 * below(200), fighters);
            reports[u"kill %1"_s.arg(number)] = report;
            db.insert_trial_report(u"kill %1"_s.arg(number), report, 1.0);
        }
    }
    std::map<QString, data::TrialReport> reports;
};

using ItemId = std::pair<double, double>;

struct LootOf {
    double pieces = 0.0;
    std::set<QString> files;
};

} // namespace

class TrialQueriesOf : public testing::TestWithParam<unsigned> {};

TEST_P(TrialQueriesOf, StatisticsAreWhatTheKillsAddUpTo)
{
    const RandomTrials store(GetParam());
    struct Question {
        QStringList bosses;
        std::optional<double> from, to;
        QString player;
    };
    for (const Question &question : {Question{}, Question{{u"Baulur"_s}, {}, {}, u"Ada"_s},
                                     Question{{u"Baulur"_s, u"Kaharak"_s}, 3000.0, 6000.0, {}},
                                     Question{{}, 600.0, {}, u"Bob"_s}}) {
        std::map<ItemId, LootOf> loot;
        std::set<QString> files;
        std::map<QString, int> kills;
        for (const auto &[file, report] : store.reports) {
            if ((!question.bosses.isEmpty() && !question.bosses.contains(report.boss_name)) ||
                (question.from && report.event_time < *question.from) ||
                (question.to && report.event_time > *question.to))
                continue;
            if (question.player.isEmpty())
                files.insert(file);
            for (const auto &someone : report.participants) {
                if (!someone.player_name.trimmed().isEmpty())
                    ++kills[someone.player_name];
                if (!question.player.isEmpty() && someone.player_name != question.player)
                    continue;
                files.insert(file);
                for (const auto &entry : someone.loot) {
                    LootOf &sum = loot[{*entry.item_type, *entry.item_subtype}];
                    sum.pieces += *entry.value;
                    sum.files.insert(file);
                }
            }
        }
        int fights = -1;
        const auto stats = store.db.trial_loot_stats(question.bosses, question.from, question.to,
                                                     question.player, &fights);
        EXPECT_EQ(fights, static_cast<int>(files.size()));
        ASSERT_EQ(stats.size(), loot.size());
        for (const data::LootStat &stat : stats) {
            const LootOf &sum = loot.at({*stat.item_type, *stat.item_subtype});
            EXPECT_EQ(stat.pieces, static_cast<int>(sum.pieces));
            EXPECT_EQ(stat.battles, static_cast<int>(sum.files.size()));
        }
        const auto players = store.db.trial_players(question.bosses, question.from, question.to);
        ASSERT_EQ(players.size(), kills.size());
        for (const data::TrialPlayerRow &player : players)
            EXPECT_EQ(player.kills, kills.at(player.name));
    }
}

TEST_P(TrialQueriesOf, SessionsTakeAllKillsOnceAndTheirPlayersAllLoot)
{
    const RandomTrials store(GetParam());
    const auto sessions = store.db.trial_sessions({}, {}, {}, 5);
    std::size_t kills = 0;
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        const data::TrialSession &session = sessions[i];
        kills += static_cast<std::size_t>(session.kills);
        if (i > 0) {
            EXPECT_GT(session.start - sessions[i - 1].end, 300.0);
        }
        std::map<QString, std::map<ItemId, qint64>> loot;
        std::map<QString, int> fought;
        for (const QString &file : session.file_names) {
            EXPECT_TRUE(session.bosses.contains(store.reports.at(file).boss_name));
            for (const auto &someone : store.reports.at(file).participants) {
                ++fought[someone.player_name];
                for (const auto &entry : someone.loot)
                    loot[someone.player_name][{*entry.item_type, *entry.item_subtype}] +=
                        static_cast<qint64>(*entry.value);
            }
        }
        const auto players = store.db.session_players(session.file_names);
        ASSERT_EQ(players.size(), fought.size());
        for (const data::SessionPlayer &player : players) {
            EXPECT_EQ(player.kills, fought.at(player.name));
            std::map<ItemId, qint64> found;
            for (const data::LootStripItem &item : player.loot)
                found[{item.item_type, item.item_subtype}] = item.quantity;
            EXPECT_EQ(found, loot[player.name]);
        }
    }
    EXPECT_EQ(kills, store.reports.size());
}

INSTANTIATE_TEST_SUITE_P(RandomStores, TrialQueriesOf, testing::Range(1u, 4u));

TEST(TrialSessions, AGapOfExactlyTheLimitDoesNotPartThem)
{
    TempStore store;
    const std::pair<double, QString> kills[] = {
        {1000.0, u"b"_s}, {1600.0, u"a"_s}, {2200.0, u"b"_s}, {2800.5, u"A"_s}};
    for (const auto &[time, boss] : kills)
        store.db.insert_trial_report(QString::number(time), kill(boss, time, {}), 1.0);
    const auto sessions = store.db.trial_sessions({}, {}, {}, 10);
    ASSERT_EQ(sessions.size(), 2u);
    EXPECT_EQ(sessions[0],
              (data::TrialSession{
                  1000.0, 2200.0, {u"b"_s, u"a"_s}, {u"1000"_s, u"1600"_s, u"2200"_s}, 3}));
    EXPECT_EQ(sessions[1].start, 2800.5);
    EXPECT_EQ(store.db.trial_sessions({u"a"_s}, {}, {}, 10).size(), 1u);
    EXPECT_EQ(store.db.trial_sessions({}, 1600.0, 2200.0, 10).at(0).kills, 2);
}

TEST(TrialDetails, ShowRatesAndLootOfTheMailInItsOrder)
{
    TempStore store;
    auto first = kill(u"Bloodfist Bargha"_s, 100.0,
                      {fighter(u"Bob"_s, 2, 0.3, {item(9, 9, 9)}),
                       fighter(u"Ada"_s, 1, 0.37, {item(2, 1, 5), item(1, 1, 6)}),
                       fighter(u"Cyd"_s, 3, 1.5), fighter(u"Dan"_s, 4, 1.6)});
    first.tile_x = 10;
    store.db.insert_trial_report(u"a"_s, first, 1.0);
    store.db.insert_trial_report(u"b"_s, kill(u"Kaharak"_s, 200.0, {fighter(u"Ada"_s, 1, 1.0)}),
                                 1.0);

    const auto kills = store.db.player_kills({u"a"_s, u"b"_s}, u"Ada"_s);
    ASSERT_EQ(kills.size(), 2u);
    EXPECT_EQ(kills[0].file_name, u"b");
    EXPECT_THAT(kills[0].loot, IsEmpty());
    EXPECT_EQ(kills[1].damage_rate, 0.37);
    EXPECT_EQ(kills[1].loot.at(1).value, 6.0);
    EXPECT_EQ(store.db.player_kills({u"b"_s}, u"Ada"_s).size(), 1u);
    EXPECT_THAT(store.db.player_kills({}, u"Ada"_s), IsEmpty());
    EXPECT_THAT(store.db.session_players({}), IsEmpty());

    const auto detail = store.db.trial_detail(u"a"_s);
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->tile_x, 10);
    EXPECT_EQ(detail->tile_y, std::nullopt);
    std::vector<std::pair<QString, double>> rates;
    for (const auto &someone : detail->participants) {
        rates.emplace_back(someone.player_name, someone.damage_rate);
        EXPECT_EQ(store.db.keep_kills(*someone.player_id, 1).at(0).damage_rate,
                  someone.damage_rate);
    }
    EXPECT_THAT(rates, ElementsAre(std::pair(u"Dan"_s, 1.6), std::pair(u"Cyd"_s, 150.0),
                                   std::pair(u"Ada"_s, 37.0), std::pair(u"Bob"_s, 30.0)));
    EXPECT_EQ(detail->participants[2].loot.at(1).value, 6.0);
    EXPECT_FALSE(store.db.trial_detail(u"none"_s));
}

TEST(KeepFights, AreFoundByTheBossesNameInAnyLanguageOrItsType)
{
    TempStore store;
    const auto add = [&store](const QString &boss, double type, double time, double player) {
        auto report = kill(boss, time, {fighter(u"Ada"_s, player, 1.0)});
        report.npc_type = type;
        store.db.insert_trial_report(boss, report, 1.0);
    };
    add(u"Bloodfist Bargha"_s, 1.0, 100.0, 1.0);
    add(u"Bargha Krwawa Pięść"_s, 2.0, 200.0, 1.0);
    add(u"in no list"_s, 102000155.0, 300.0, 1.0);
    add(u"nor this"_s, 401000098.0, 400.0, 1.0);
    add(u"Baulur"_s, 3.0, 500.0, 1.0);
    add(u"bloodfist bargha"_s, 3.0, 600.0, 1.0);
    add(u"of another"_s, 401000098.0, 700.0, 2.0);
    QStringList bosses;
    for (const data::KeepKill &one : store.db.keep_kills(1.0, 3))
        bosses << one.boss_name;
    EXPECT_EQ(bosses, (QStringList{u"nor this"_s, u"in no list"_s, u"Bargha Krwawa Pięść"_s}));
    EXPECT_EQ(store.db.keep_kills(1.0, 99).size(), 4u);
    EXPECT_EQ(store.db.last_keep_kill(1.0), 400.0);
    EXPECT_EQ(store.db.last_keep_kill(3.0), std::nullopt);
}

TEST(KeepPlayer, IsTheOneOfTheMostRoundsOrElseKills)
{
    TempStore store;
    EXPECT_EQ(store.db.keep_player(), std::nullopt);
    store.db.insert_trial_report(u"kill"_s, trial({fighter(u"Bob"_s, 2, 1.0)}), 1.0);
    EXPECT_EQ(store.db.keep_player(), 2.0);
    const auto add = [&store](const QString &file, double player, std::size_t rounds) {
        auto chain = battle(1.0, std::vector(rounds, battle_round(1.0)));
        chain.player_id = player;
        store.db.insert_report(file, chain, 1.0);
    };
    add(u"a"_s, 7.0, 1);
    add(u"b"_s, 7.0, 1);
    add(u"c"_s, 8.0, 3);
    EXPECT_EQ(store.db.keep_player(), 8.0);
}

TEST(FortQueries, IncludeBothEndsAndTheLevel)
{
    TempStore store;
    for (const int number : {1, 2, 3, 4}) {
        auto report = fort(100.0 * number, {item(1, number % 2, 10 * number), item(5, 5, 1)});
        report.fort_level = number;
        store.db.insert_fort_report(u"fort %1"_s.arg(number), report, 1.0);
    }
    const auto forts = store.db.fort_list(200.0, 300.0, 0, 9);
    ASSERT_EQ(forts.size(), 2u);
    EXPECT_EQ(forts[0].file_name, u"fort 3");
    EXPECT_EQ(forts[1].loot.at(0).value, 20.0);
    EXPECT_EQ(store.db.fort_list({}, {}, 3, 9).size(), 2u);
    EXPECT_EQ(store.db.fort_list({}, {}, 3, 1).at(0).file_name, u"fort 4");
    int fights = 0;
    std::vector<std::array<double, 4>> sums;
    for (const data::LootStat &stat : store.db.fort_loot_stats(200.0, 400.0, 2, &fights))
        sums.push_back(
            {*stat.item_type, *stat.item_subtype, double(stat.pieces), double(stat.battles)});
    EXPECT_EQ(fights, 3);
    using Sum = std::array<double, 4>;
    EXPECT_THAT(sums,
                testing::UnorderedElementsAre(Sum{1, 0, 60, 2}, Sum{1, 1, 30, 1}, Sum{5, 5, 3, 3}));
}

TEST(FortQueries, CountFightsAndLootOfOneState)
{
    TempStore store;
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (int i = 0; i < 400; ++i)
            store.db.insert_fort_report(QString::number(i), fort(100.0 + i, {item(5, 6, 7)}), 1.0);
        done = true;
    });
    int mixed = 0;
    while (!done) {
        int fights = 0;
        const auto stats = store.db.fort_loot_stats({}, {}, 0, &fights);
        mixed += (stats.empty() ? 0 : stats.at(0).battles) != fights;
    }
    writer.join();
    EXPECT_EQ(mixed, 0);
}

TEST(FortBattle, IsTheLinkedChainAsLongAsItIsStored)
{
    TempStore store;
    store.db.insert_fort_report(u"fort"_s, fort(1000.0), 1.0);
    EXPECT_FALSE(store.db.fort_battle(u"fort"_s));
    auto chain =
        battle(1000.0, {battle_round(5.0, {item(1, 2, 3), item(1, 1, 4)}), battle_round(9.0)});
    chain.hero_id_1 = 7.0;
    store.db.insert_report(u"chain"_s, chain, 1.0);
    store.db.link_fort_to_chains();
    const auto fought = store.db.fort_battle(u"fort"_s);
    ASSERT_TRUE(fought);
    EXPECT_EQ(fought->battle_file_name, u"chain");
    EXPECT_EQ(fought->hero_id_1, 7.0);
    EXPECT_EQ(fought->hero_id_2, std::nullopt);
    EXPECT_EQ(fought->player_name, u"Ada");
    ASSERT_EQ(fought->rounds.size(), 2u);
    EXPECT_EQ(fought->rounds[0].loot.at(1).value, 4.0);
    EXPECT_FALSE(fought->rounds[0].is_fort_round);
    EXPECT_TRUE(fought->rounds[1].is_fort_round);
    rows_of(store.db.connection(), u"DELETE FROM reports"_s);
    EXPECT_FALSE(store.db.fort_battle(u"fort"_s));
}
