#include "data/master/master_cache.h"
#include "support/chain_reference.h"
#include "support/local_zone.h"
#include "support/plain_connection.h"
#include "support/print_records.h"
#include "support/random_chains.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

#include <QScopeGuard>

#include <algorithm>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

constexpr double barbarians = 1.0;

std::vector<ChainQuestion> questions()
{
    std::vector<ChainQuestion> all;
    for (const double btype : {1.0, 2.0}) {
        for (const auto mode : {data::ApSource::all, data::ApSource::paid, data::ApSource::free}) {
            all.push_back({btype, {}, {}, {}, mode});
            all.push_back({btype, 3600.0, {}, {}, mode});
            all.push_back({btype, {}, 3600.0, {}, mode});
            all.push_back({btype, 3600.0, 1.65e9, {}, mode});
            all.push_back({btype, {}, {}, 5001.0, mode});
            all.push_back({btype, 0.0, 7200.0, 5002.0, mode});
        }
    }
    return all;
}

std::vector<data::LootStat> sorted(std::vector<data::LootStat> stats)
{
    std::sort(stats.begin(), stats.end(), [](const data::LootStat &a, const data::LootStat &b) {
        return std::pair(a.item_type, a.item_subtype) < std::pair(b.item_type, b.item_subtype);
    });
    return stats;
}

void expect_as_computed(data::TallyDb &db, const ChainReference &reference)
{
    for (const ChainQuestion &question : questions()) {
        const auto &[btype, from, to, player, mode] = question;
        SCOPED_TRACE(testing::Message()
                     << "btype " << btype << " from " << from.value_or(-1.0) << " to "
                     << to.value_or(-1.0) << " player " << player.value_or(-1.0) << " mode "
                     << static_cast<int>(mode));
        db.free_ap_mode = static_cast<int>(mode);
        EXPECT_EQ(db.question(btype, from, to, player), question);
        EXPECT_EQ(db.summary(btype, from, to, player), reference.summary(question));
        EXPECT_EQ(db.best_chain(btype, from, to, player), reference.best_chain(question));
        EXPECT_EQ(sorted(db.loot_stats(btype, from, to, player)), reference.loot_stats(question));
        EXPECT_EQ(db.hourly(btype, from, to, player),
                  reference.hourly(question, QTimeZone::systemTimeZone()));
        const auto pairs = db.hero_pairs(btype, from, to, player);
        std::map<std::pair<int, int>, int> counts;
        for (const data::HeroPair &pair : pairs)
            counts[{pair.hero_1, pair.hero_2}] = pair.chains;
        EXPECT_EQ(counts, reference.hero_pairs(question));
        EXPECT_EQ(counts.size(), pairs.size());
        EXPECT_TRUE(std::is_sorted(pairs.begin(), pairs.end(), [](const auto &a, const auto &b) {
            return a.chains > b.chains;
        }));
    }
    std::map<double, int> chains;
    for (const data::PlayerRow &player : db.players())
        chains[*player.player_id] = player.n;
    EXPECT_EQ(chains, reference.chains_of_players());
    for (const double since : {0.0, 3600.0, 5000.5, 1.65e9})
        EXPECT_EQ(db.honor_since(since), reference.honor_since(since));
}

/// As if another program had changed half of the chains.
void make_stale(const QString &path)
{
    PlainConnection(path).rows(
        u"UPDATE reports SET level = level WHERE file_name GLOB '*[02468]'"_s);
}

bool has_stale_chains(const data::TallyDb &db)
{
    return text_of(db.connection(), u"SELECT COUNT(*) FROM main.stale_chains"_s) != u"0";
}

} // namespace

class ChainStatisticsOf : public testing::TestWithParam<unsigned> {};

TEST_P(ChainStatisticsOf, AreWhatTheRowsAddUpTo)
{
    TempStore store;
    const unsigned seed = GetParam();
    if (seed > 0) // else an empty store
        add_random_chains(store.db, seed);
    ASSERT_FALSE(has_stale_chains(store.db));
    const ChainReference reference(store.db.connection());
    expect_as_computed(store.db, reference);
    make_stale(store.path);
    EXPECT_EQ(has_stale_chains(store.db), seed > 0);
    expect_as_computed(store.db, reference);
    EXPECT_FALSE(has_stale_chains(store.db));

    // While the store cannot be written.
    make_stale(store.path);
    const PlainConnection holder(store.path);
    holder.rows(u"BEGIN IMMEDIATE"_s);
    expect_as_computed(store.db, reference);
    EXPECT_EQ(has_stale_chains(store.db), seed > 0);
    holder.rows(u"COMMIT"_s);
    PlainConnection(store.path).rows(u"DELETE FROM loot WHERE id % 3 = 0"_s);
    expect_as_computed(store.db, ChainReference(store.db.connection()));
    EXPECT_FALSE(has_stale_chains(store.db));
}

INSTANTIATE_TEST_SUITE_P(RandomStores, ChainStatisticsOf, testing::Range(0u, 13u));

TEST(ChainStatistics, CarriedOnFromReportToReportAreThoseOfANewReader)
{
    TempStore store;
    add_random_chains(store.db, 3, 5);
    for (int step = 0; step < 24; ++step) {
        auto chain = battle(3600.0 * (step % 7), {battle_round(1.0, {item(1, 2, step % 2)}),
                                                  battle_round(1.0, {item(1, 2, step % 3)})});
        chain.player_id = 5000.0 + step % 4;
        chain.player_name = step % 5 == 4 ? u"\U0001F409"_s : u"\uFFE0 %1"_s.arg(step % 3);
        store.db.insert_report(u"later %1"_s.arg(step % 17), chain, 1.0); // some again
        if (step % 8 == 7)
            rows_of(store.db.connection(), u"DELETE FROM %1 WHERE file_name = 'later %2'"_s
                                               .arg(step % 16 == 7 ? u"reports"_s : u"loot"_s)
                                               .arg(step - 1));
        const data::TallyDb reader(store.path);
        EXPECT_EQ(store.db.players(), reader.players()) << step;
        for (const ChainQuestion &question : questions())
            EXPECT_EQ(store.db.best_chain(question), reader.best_chain(question)) << step;
    }
}

TEST(ChainStatistics, ABarbarianMetAgainMakesALossTacticalAndTheWinFree)
{
    TempStore store;
    const auto met = [](std::vector<data::LootEntry> loot) {
        auto round = battle_round(1.0, std::move(loot));
        round.npc_ctid = 900.0;
        return round;
    };
    store.db.insert_report(u"a"_s, battle(100.0, {met({})}), 1.0);
    store.db.insert_report(u"b"_s, battle(200.0, {met({item(1, 2, 3)})}), 1.0);
    const auto both = store.db.summary(barbarians, {}, {}, {});
    EXPECT_EQ(both.tactical, 1);
    EXPECT_EQ(both.free_ap, 1);
    EXPECT_EQ(both.wins, 0);
    EXPECT_EQ(both.chains_ap_only, 1);
    const auto later = store.db.summary(barbarians, 100.5, {}, {});
    EXPECT_EQ(later.wins, 1);
    EXPECT_EQ(later.free_ap, 0);
    // Loot that adds up to nothing is no win, but earns honor.
    store.db.insert_report(u"c"_s, battle(300.0, {met({item(1, 2, 5), item(1, 3, -5)})}), 1.0);
    EXPECT_EQ(store.db.summary(barbarians, 300.0, {}, {}).kills, 0);
    EXPECT_EQ(store.db.summary(barbarians, 300.0, {}, {}).honor, 10);
}

TEST(ChainStatistics, SumsBeyondAnIntStopAtItsEndAndFractionsAreRounded)
{
    TempStore store;
    store.db.insert_report(
        u"chain"_s,
        battle(100.0, {battle_round(1.0, {item(1, 2, 3e9), item(1, 3, -3e300), item(1, 4, 2.7)})}),
        1.0);
    const auto stats = sorted(store.db.loot_stats(barbarians, {}, {}, {}));
    ASSERT_EQ(stats.size(), 3u);
    EXPECT_EQ(stats[0].pieces, std::numeric_limits<int>::max());
    EXPECT_EQ(stats[0].total_value, 3'000'000'000);
    EXPECT_EQ(stats[1].pieces, std::numeric_limits<int>::min());
    EXPECT_EQ(stats[2].pieces, 3) << "not the nearest";
    EXPECT_EQ(stats[2].total_value, 3);
}

TEST(ChainStatistics, LootTakesItsFactsFromTheTablesOfTheMoment)
{
    data::MasterCache &cache = data::MasterCache::instance();
    const auto cleanup = qScopeGuard([&] { cache.clear(); });
    TempStore store;
    store.db.insert_report(u"chain"_s, battle(100.0, {battle_round(1.0, {item(4, 7, 3)})}), 1.0);
    EXPECT_EQ(store.db.loot_stats(barbarians, {}, {}, {}).at(0).total_value, 3);
    cache.load_json(u"items"_s, R"({"items": {"4.0_7.0": {"name": "Speedup", "unit_value": 2.5,
                                    "unit": "min", "icon": "s.webp"}}})");
    const auto stat = store.db.loot_stats(barbarians, {}, {}, {}).at(0);
    EXPECT_EQ(stat.name, u"Speedup");
    EXPECT_EQ(stat.unit, u"min");
    EXPECT_EQ(stat.icon, u"s.webp");
    EXPECT_EQ(stat.total_value, 8);
}

class ChainHoursIn : public testing::TestWithParam<const char *> {};

TEST_P(ChainHoursIn, AChainCountsAtTheLocalHourOfItsStart)
{
    const LocalZone zone(GetParam());
    TempStore store;
    constexpr double step = 5.5 * 3600.0;
    // From before to after a summer, so over both changes of the clock.
    for (int i = 0; i < 1500; ++i)
        rows_of(store.db.connection(),
                u"INSERT INTO reports (file_name, round_no, npc_btype, chain_start_time) "
                "VALUES ('%1', 0, 1, %2)"_s.arg(i)
                    .arg(1'704'067'200.0 + i * step, 0, 'f', 3));
    const ChainReference reference(store.db.connection());
    const auto expected = reference.hourly({}, QTimeZone(GetParam()));
    EXPECT_EQ(store.db.hourly(barbarians, {}, {}, {}), expected);
    store.db.link_fort_to_chains();
    EXPECT_EQ(store.db.hourly(barbarians, {}, {}, {}), expected);
}

INSTANTIATE_TEST_SUITE_P(Zones, ChainHoursIn,
                         testing::Values("UTC", "Europe/Warsaw", "America/New_York",
                                         "Asia/Kolkata"));

TEST(ChainHours, FollowAChangeOfTheZone)
{
    const LocalZone zone("UTC");
    TempStore store;
    store.db.insert_report(u"chain"_s, battle(1'704'067'200.0, {battle_round(1.0)}), 1.0);
    EXPECT_EQ(store.db.hourly(barbarians, {}, {}, {})[0], 1);
    const LocalZone moved("Asia/Tokyo");
    EXPECT_EQ(store.db.hourly(barbarians, {}, {}, {})[9], 1);
}

TEST(ChainLists, APairGivesItsChainsNewestFirstWithAllTheirRounds)
{
    TempStore store;
    auto chain = battle(
        100.0, {battle_round(1.0, {item(1, 2, 3), item(1, 1, 4)}), battle_round(2'000'000.0)});
    chain.hero_id_1 = 7.0;
    chain.hero_id_2 = 8.0;
    chain.rounds[1].is_fort_round = 1;
    chain.rounds[1].level = 6.0;
    store.db.insert_report(u"old"_s, chain, 1.0);
    chain.chain_start_time = 5000.0;
    chain.chain_end_time = 5100.0;
    store.db.insert_report(u"new"_s, chain, 1.0);
    chain.rounds = {chain.rounds[1]};
    store.db.insert_report(u"nothing but the fort"_s, chain, 1.0);
    store.db.insert_fort_report(u"fort"_s, fort(120.0, {item(5, 6, 7)}), 1.0);
    store.db.link_fort_to_chains();

    const auto chains = store.db.chains_for_pair(7, 8, barbarians, {}, {}, {});
    ASSERT_EQ(chains.size(), 2u);
    EXPECT_EQ(chains[0].file_name, u"new");
    EXPECT_EQ(chains[0].chain_end_time, 5100.0);
    EXPECT_EQ(chains[0].fort_file_name, u"");
    EXPECT_EQ(chains[1].fort_file_name, u"fort");
    ASSERT_EQ(chains[1].rounds.size(), 2u);
    EXPECT_EQ(chains[1].rounds[0].loot.at(1).value, 4.0);
    EXPECT_EQ(chains[1].rounds[0].fort_level, std::nullopt);
    EXPECT_TRUE(chains[1].rounds[1].is_fort_round);
    EXPECT_EQ(chains[1].rounds[1].fort_level, 6);
    EXPECT_THAT(store.db.chains_for_pair(8, 7, barbarians, {}, {}, {}), IsEmpty());
    EXPECT_THAT(store.db.chains_for_pair(7, 8, barbarians, 5000.5, {}, {}), IsEmpty());

    const auto earned = store.db.fort_of_chain(u"old"_s);
    ASSERT_TRUE(earned);
    EXPECT_EQ(earned->file_name, u"fort");
    EXPECT_EQ(earned->event_time, 120.0);
    EXPECT_EQ(earned->loot.at(0).value, 7.0);
    EXPECT_FALSE(store.db.fort_of_chain(u"new"_s));
}
