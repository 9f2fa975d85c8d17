#include "support/print_qt.h"
#include "support/round_builders.h"
#include "ui/chains/round_overview.h"
#include "ui/chains/scroll_scale.h"
#include "ui/chains/stack_geometry.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

using namespace tally;
using namespace tally::ui;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

class RoundOverviewOf : public testing::Test {
protected:
    ReferenceTables tables;
};

} // namespace

TEST(ChainDuration, IsShownInTheTwoLargestUnits)
{
    const std::pair<std::optional<double>, QString> cases[] = {
        {std::nullopt, u"?"_s}, {0.0, u"?"_s},
        {-5.0, u"?"_s},         {1e300, u"?"_s},
        {0.5, u"0s"_s},         {59.9, u"59s"_s},
        {60.0, u"1min 0s"_s},   {3599.0, u"59min 59s"_s},
        {3600.0, u"1h 0min"_s}, {90'060.0, u"25h 1min"_s}};
    for (const auto &[seconds, text] : cases)
        EXPECT_EQ(chain_duration_text(seconds), text);
}

TEST_F(RoundOverviewOf, TheHeadOfAChainTellsItsStartLengthAndRounds)
{
    data::ChainRun chain =
        chain_of(u"a"_s, 1'750'000'000.9, {won_round(), lost_round(), won_round()});
    EXPECT_EQ(chain_head_text(3, head_of(chain)),
              u"Chain #3  ·  start 15:06:40 UTC  ·  ?  ·  3 rounds (2 won / 1 escapes)");
    chain.chain_end_time = 1'750'000'100.0;
    EXPECT_EQ(chain_head_text(3, head_of(chain)),
              u"Chain #3  ·  start 15:06:40 UTC  ·  1min 39s  ·  3 rounds (2 won / 1 escapes)");
    EXPECT_EQ(chain_date_text(head_of(chain)), u"2025-06-15 15:06:40 UTC");
    chain.chain_start_time.reset();
    EXPECT_EQ(chain_head_text(3, head_of(chain)),
              u"Chain #3  ·  start ? UTC  ·  ?  ·  3 rounds (2 won / 1 escapes)");
    chain.chain_start_time = 1e300;
    EXPECT_EQ(chain_head_text(3, head_of(chain)),
              u"Chain #3  ·  start ? UTC  ·  ?  ·  3 rounds (2 won / 1 escapes)");
}

TEST_F(RoundOverviewOf, TheBannerCountsOverAllChains)
{
    const RoundOverview overview({chain_of(u"b"_s, 2.0, {won_round(), fort_round(1.0)}),
                                  chain_of(u"a"_s, 1.0, {lost_round()})},
                                 {});
    EXPECT_EQ(overview.banner(u"%2"_s, u"Bea"_s),
              u"%2 + Bea   ·   2 chains   ·   3 rounds   ·   1 won / 2 escapes");
}

TEST_F(RoundOverviewOf, ABarbarianThatIsMetAgainLinksItsRounds)
{
    const RoundOverview overview(
        {chain_of(u"b"_s, 2.0, {won_round(7.0)}), chain_of(u"a"_s, 1.0, {lost_round(7.0)})}, {});
    EXPECT_EQ(overview.row(0, 0).status.text, u"Victory");
    EXPECT_EQ(overview.row(0, 0).tag.text, u"★ FREE AP");
    EXPECT_EQ(overview.row(1, 0).status.text, u"(tactical)");
    EXPECT_EQ(overview.row(1, 0).tag.text, u"★ TACTICAL");
}

TEST_F(RoundOverviewOf, AFortFallsInOneRoundAndOnlyIfItsRecordIsThere)
{
    const auto rounds = [] {
        return std::vector{fort_round(5.0), lost_round(), fort_round(4.0)};
    };
    data::FortOfChain fort;
    fort.loot = {loot_of(1.0), loot_of(2.0)};
    const RoundOverview overview({chain_of(u"b"_s, 2.0, rounds()), chain_of(u"a"_s, 1.0, rounds())},
                                 {fort});
    EXPECT_EQ(overview.row(0, 0).status.text, u"Attempt fail");
    EXPECT_EQ(overview.row(0, 1).status.text, u"Escape");
    EXPECT_EQ(overview.row(0, 2).status.text, u"Destroyed");
    EXPECT_EQ(overview.reward_count(0, 0), 0u);
    EXPECT_EQ(overview.reward_count(0, 2), 2u);
    EXPECT_EQ(overview.row(1, 2).status.text, u"Attempt fail");
}

RC_GTEST_PROP(StackGeometry, FindsWhatReachesIntoAStrip, ())
{
    StackGeometry stack(*rc::gen::inRange(0, 9), *rc::gen::inRange(0, 9), *rc::gen::inRange(0, 9));
    for (const int height : *rc::gen::container<std::vector<int>>(rc::gen::inRange(1, 30)))
        stack.add(height);
    const int top = *rc::gen::inRange(-50, 500);
    const int bottom = top + *rc::gen::inRange(0, 200);
    const auto [first, last] = stack.between(top, bottom);
    RC_ASSERT(first <= last);
    for (size_t i = 0; i < stack.count(); ++i) {
        const bool reaches = stack.top(i) < bottom && stack.top(i) + stack.height(i) > top;
        RC_ASSERT(reaches == (first <= i && i < last));
    }
}

TEST(StackGeometry, AMillionChainsReachBeyondWhatAnIntHolds)
{
    constexpr size_t chains = 1'000'000;
    constexpr qint64 height = 9'000;
    StackGeometry stack(8, 6, 8);
    for (size_t i = 0; i < chains; ++i)
        stack.add(height);
    EXPECT_EQ(stack.total_height(), 9'006'000'010);
    const qint64 oldest = stack.top(chains - 1);
    EXPECT_EQ(stack.between(oldest, oldest + 1), std::pair(chains - 1, chains));
    stack.set_height(1, height + 50);
    EXPECT_EQ(stack.top(1), 8 + height + 6);
    EXPECT_EQ(stack.height(1), height + 50);
    EXPECT_EQ(stack.height(2), height);
    EXPECT_EQ(stack.top(chains - 1), oldest + 50);
}

TEST(ScrollScale, ABarReachesBothEndsOfAnyWayAndEveryPixelOfAUsualOne)
{
    for (const qint64 way : {qint64{0}, qint64{1}, qint64{60'000'000}, qint64{1} << 30,
                             (qint64{1} << 30) + 1, qint64{9'006'000'010}}) {
        const ScrollScale scale(way);
        EXPECT_EQ(scale.offset_of(0), 0);
        EXPECT_EQ(scale.offset_of(scale.maximum()), way);
        EXPECT_EQ(scale.value_of(way), scale.maximum());
        EXPECT_LE(scale.maximum(), 1 << 30);
        EXPECT_GE(scale.steps(20), 1);
        for (int value : {1, scale.maximum() / 3, scale.maximum() - 1}) {
            value = std::clamp(value, 0, scale.maximum());
            EXPECT_EQ(scale.value_of(scale.offset_of(value)), value);
        }
    }
    EXPECT_EQ(ScrollScale(60'000'000).offset_of(59'999'999), 59'999'999);
    EXPECT_EQ(ScrollScale(-5).maximum(), 0);
}
