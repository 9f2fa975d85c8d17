#include "support/hostile_numbers.h"
#include "support/print_qt.h"
#include "support/round_builders.h"
#include "ui/chains/encounters.h"

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::ui;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

constexpr double ct = 7.0;

struct Meetings {
    const char *rule;
    std::vector<data::ChainRun> chains; ///< newest first
    std::string marks;                  ///< F free, T tactical, - neither; as the chains stand
};

std::string marks_of(const std::vector<data::ChainRun> &chains)
{
    std::vector<data::ChainHead> heads;
    for (const data::ChainRun &chain : chains)
        heads.push_back(head_of(chain));
    const Encounters encounters(heads);
    std::string marks;
    for (size_t chain = 0; chain < chains.size(); ++chain) {
        for (const auto &[is_free, is_tactical] :
             encounters.meetings(chain, chains[chain].rounds)) {
            EXPECT_FALSE(is_free && is_tactical);
            marks += is_free ? 'F' : is_tactical ? 'T' : '-';
        }
    }
    return marks;
}

} // namespace

TEST(Encounters, FollowEachBarbarianThroughTheChains)
{
    const Meetings cases[] = {
        {"no barbarian known",
         {chain_of(u"b"_s, 200.0, {won_round(), lost_round()}),
          chain_of(u"a"_s, 100.0, {lost_round(), won_round()})},
         "----"},
        {"met again and beaten",
         {chain_of(u"b"_s, 200.0, {won_round(ct)}), chain_of(u"a"_s, 100.0, {lost_round(ct)})},
         "FT"},
        {"beaten first",
         {chain_of(u"b"_s, 200.0, {lost_round(ct)}), chain_of(u"a"_s, 100.0, {won_round(ct)})},
         "--"},
        {"never beaten, the last is no tactic",
         {chain_of(u"c"_s, 300.0, {lost_round(ct)}), chain_of(u"b"_s, 200.0, {lost_round(ct)}),
          chain_of(u"a"_s, 100.0, {lost_round(ct)})},
         "-TT"},
        {"within one chain, and again later",
         {chain_of(u"b"_s, 200.0, {won_round(ct)}),
          chain_of(u"a"_s, 100.0, {won_round(ct), lost_round(ct), won_round(ct), lost_round()})},
         "F-TF-"},
        {"another barbarian in between",
         {chain_of(u"b"_s, 200.0, {won_round(8.0), won_round(ct)}),
          chain_of(u"a"_s, 100.0, {lost_round(ct)})},
         "-FT"},
        {"beaten twice after it got away",
         {chain_of(u"b"_s, 200.0, {won_round(ct), won_round(ct)}),
          chain_of(u"a"_s, 100.0, {lost_round(ct)})},
         "FFT"},
        {"a chain without a start comes first",
         {chain_of(u"b"_s, 200.0, {won_round(ct)}),
          chain_of(u"a"_s, std::nullopt, {lost_round(ct)})},
         "FT"},
        {"time decides, not the order of the list",
         {chain_of(u"a"_s, 100.0, {lost_round(ct)}), chain_of(u"b"_s, 200.0, {won_round(ct)})},
         "TF"},
        {"ids count without their fraction",
         {chain_of(u"b"_s, 200.0, {won_round(7.9)}), chain_of(u"a"_s, 100.0, {lost_round(7.2)})},
         "FT"},
        {"ids beyond an int are told apart",
         {chain_of(u"b"_s, 200.0, {won_round(5e12)}), chain_of(u"a"_s, 100.0, {lost_round(6e12)})},
         "--"}};
    for (const auto &[rule, chains, marks] : cases)
        EXPECT_EQ(marks_of(chains), marks) << rule;
}

TEST(Encounters, ItemsWithoutValueAreNoLoot)
{
    data::ChainRound round = won_round();
    EXPECT_TRUE(has_loot(round));
    for (const std::optional<double> value : {std::optional(0.0), std::optional<double>()}) {
        round.loot.front().value = value;
        EXPECT_FALSE(has_loot(round));
    }
    round.loot.clear();
    EXPECT_FALSE(has_loot(round));
}

TEST(Encounters, TheFinalFortRoundDealtTheMostDamage)
{
    const auto final_of = [](std::vector<data::ChainRound> rounds) {
        return final_fort_round(chain_of(u"a"_s, 1.0, std::move(rounds)).rounds);
    };
    data::ChainRound strong;
    strong.damage_dealt = 900.0;
    EXPECT_EQ(final_of({fort_round(10.0), strong, fort_round(20.0), fort_round(15.0)}), 2);
    EXPECT_EQ(final_of({fort_round(10.0), fort_round(10.0)}), 0);
    EXPECT_EQ(final_of({strong, fort_round(std::nullopt)}), 1);
    EXPECT_EQ(final_of({fort_round(-5.0)}), -1);
    EXPECT_EQ(final_of({strong}), -1);
    EXPECT_EQ(final_of({}), -1);
}
