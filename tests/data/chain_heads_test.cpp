#include "support/random_chains.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <tuple>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

constexpr double barbarians = 1.0;

bool has_loot(const data::ChainRound &round)
{
    return std::accumulate(round.loot.begin(), round.loot.end(), 0.0,
                           [](double sum, const data::LootEntry &item) {
                               return sum + item.value.value_or(0.0);
                           }) > 0.0;
}

using Told = std::tuple<QString, std::optional<double>, std::optional<double>, int, int, bool, int>;

std::vector<Told> told_by(const std::vector<data::ChainRun> &chains)
{
    std::vector<Told> told;
    for (const data::ChainRun &chain : chains) {
        const auto count = [&chain](auto of) {
            return static_cast<int>(std::ranges::count_if(chain.rounds, of));
        };
        told.emplace_back(
            chain.file_name, chain.chain_start_time, chain.chain_end_time,
            static_cast<int>(chain.rounds.size()), count(has_loot),
            count([](const auto &round) { return round.is_fort_round; }) > 0,
            count([](const auto &round) { return round.npc_ctid && has_loot(round); }));
    }
    std::ranges::sort(told);
    return told;
}

std::vector<Told> told_by(const std::vector<data::ChainHead> &heads)
{
    std::vector<Told> told;
    for (const data::ChainHead &head : heads)
        told.emplace_back(
            head.file_name, head.chain_start_time, head.chain_end_time, head.rounds, head.wins,
            head.has_fort_round,
            static_cast<int>(std::ranges::count_if(head.fights, &data::ChainFight::won)));
    std::ranges::sort(told);
    return told;
}

} // namespace

TEST(ChainHeads, TellOfThePairsChainsWhatTheirRoundsAddUpTo)
{
    size_t compared = 0;
    for (unsigned seed = 0; seed < 6; ++seed) {
        TempStore store;
        add_random_chains(store.db, seed);
        store.db.complete_chain_slices();
        for (const data::HeroPair &pair : store.db.hero_pairs(barbarians, {}, {}, {})) {
            for (const std::optional<double> from : {std::optional<double>(), {1500.0}}) {
                const auto heads = store.db.chain_heads_for_pair(
                    pair.hero_1, pair.hero_2, store.db.question(barbarians, from, {}, {}));
                EXPECT_EQ(told_by(heads), told_by(store.db.chains_for_pair(
                                              pair.hero_1, pair.hero_2, barbarians, from, {}, {})));
                EXPECT_TRUE(std::ranges::is_sorted(heads, std::greater(),
                                                   &data::ChainHead::chain_start_time));
                compared += heads.size();
            }
        }
    }
    EXPECT_GT(compared, 50u);
}

TEST(ChainHeads, AFortCountsOnlyWithLootAndForTheChainThatItIsTiedTo)
{
    TempStore store;
    for (const auto &[name, start] : {std::pair(u"rich"_s, 1000.0), {u"poor"_s, 5000.0}}) {
        data::BattleRound round = battle_round(1.0);
        data::BattleRound fort_round = battle_round(1.0);
        fort_round.is_fort_round = 1;
        data::BattleReport report = battle(start, {round, fort_round});
        report.hero_id_1 = 7.0;
        report.hero_id_2 = 8.0;
        store.db.insert_report(name, report, start);
    }
    store.db.insert_fort_report(u"fort 1"_s, fort(1000.0, {item(4.0, 1.0, 10.0)}), 1.0);
    store.db.insert_fort_report(u"fort 2"_s, fort(5000.0, {item(4.0, 1.0, 0.0)}), 1.0);
    store.db.link_fort_to_chains();
    store.db.complete_chain_slices();
    const auto heads =
        store.db.chain_heads_for_pair(7, 8, store.db.question(barbarians, {}, {}, {}));
    ASSERT_EQ(heads.size(), 2u);
    EXPECT_FALSE(heads[0].has_fort_loot);
    EXPECT_TRUE(heads[1].has_fort_loot);
}
