#include "support/print_qt.h"
#include "support/round_builders.h"
#include "ui/chains/round_look.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace tally;
using namespace tally::ui;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace tally::ui {

void PrintTo(const StyledText &text, std::ostream *out)
{
    *out << text.text.toStdString() << " {" << text.style.toStdString() << '}';
}

} // namespace tally::ui

namespace {

data::ChainRound round_on_the_way_to_a_fort()
{
    data::ChainRound round = lost_round();
    round.is_free_ap = true;
    return round;
}

data::FortOfChain fort_with(int level, int damage_percent)
{
    data::FortOfChain fort;
    fort.fort_level = level;
    fort.damage_percent = damage_percent;
    return fort;
}

QStringList names_of(const std::vector<data::LootEntry> &items)
{
    QStringList names;
    for (const data::LootEntry &item : items)
        names.push_back(item.name);
    return names;
}

class RoundLookOf : public testing::Test {
protected:
    ReferenceTables tables;
};

constexpr RoundFlags all_flags{.is_free = true, .is_tactical = true, .is_destroyed = true};

} // namespace

TEST(RoundStatus, TheFirstThatAppliesIsShown)
{
    const struct {
        data::ChainRound round;
        RoundFlags flags;
        StyledText expected;
    } cases[] = {
        {fort_round(1.0), all_flags, {u"Destroyed"_s, u"font-weight: bold; color: #3aa3ff;"_s}},
        {fort_round(1.0),
         {.is_tactical = true},
         {u"Attempt fail"_s, u"font-weight: bold; color: #e67e22;"_s}},
        {won_round(),
         {.is_free = true, .is_tactical = true},
         {u"Victory"_s, u"font-weight: bold; color: #2ecc71;"_s}},
        {lost_round(),
         {.is_tactical = true},
         {u"(tactical)"_s, u"font-weight: bold; color: #f39c12;"_s}},
        {lost_round(), {}, {u"Escape"_s, u"font-weight: bold; color: #e74c3c;"_s}}};
    for (const auto &[round, flags, expected] : cases)
        EXPECT_EQ(status_text(status_of(round, flags)), expected);
}

TEST(RoundTag, TheFirstThatAppliesIsShown)
{
    const struct {
        data::ChainRound round;
        RoundFlags flags;
        std::optional<data::FortOfChain> fort;
        StyledText expected;
    } cases[] = {{fort_round(1.0),
                  all_flags,
                  fort_with(5, 37),
                  {u"💥 37% dmg"_s, u"color: #3aa3ff; font-weight: bold;"_s}},
                 {fort_round(1.0), {.is_destroyed = true}, fort_with(5, 0), {}},
                 {fort_round(1.0), {.is_destroyed = true}, std::nullopt, {}},
                 {fort_round(1.0), {}, fort_with(5, 37), {}},
                 {round_on_the_way_to_a_fort(),
                  all_flags,
                  fort_with(5, 37),
                  {u"🎁 Free AP"_s, u"color: #4a9a5f; font-weight: bold;"_s}},
                 {lost_round(),
                  all_flags,
                  std::nullopt,
                  {u"★ FREE AP"_s, u"color: #DAA520; font-weight: bold;"_s}},
                 {lost_round(),
                  {.is_tactical = true},
                  std::nullopt,
                  {u"★ TACTICAL"_s, u"color: #DAA520; font-weight: bold;"_s}},
                 {lost_round(), {}, std::nullopt, {}}};
    for (const auto &[round, flags, fort, expected] : cases)
        EXPECT_EQ(tag_text(round, flags, fort), expected);
}

TEST(FortTarget, TheBestKnownLevelIsShown)
{
    const struct {
        std::optional<int> stored_level;
        std::optional<double> level;
        std::optional<data::FortOfChain> fort;
        QString expected;
    } cases[] = {{4, 5.0, fort_with(6, 1), u"🏰 Fort Lvl 4"_s},
                 {std::nullopt, 5.9, fort_with(6, 1), u"🏰 Fort Lvl 5"_s},
                 {std::nullopt, 0.0, fort_with(6, 1), u"🏰 Fort Lvl 6"_s},
                 {std::nullopt, 1e300, fort_with(6, 1), u"🏰 Fort Lvl 6"_s},
                 {std::nullopt, std::nullopt, fort_with(0, 1), u"🏰 Fort Lvl ?"_s},
                 {std::nullopt, -3.0, std::nullopt, u"🏰 Fort Lvl ?"_s}};
    for (const auto &[stored_level, level, fort, expected] : cases) {
        data::ChainRound round = fort_round(1.0);
        round.fort_level = stored_level;
        round.level = level;
        EXPECT_EQ(target_text(round, true, fort),
                  (StyledText{expected, u"color: #3aa3ff; font-weight: 600;"_s}));
    }
}

TEST_F(RoundLookOf, ABarbarianShowsItsOwnLevelBeforeThatOfItsType)
{
    data::ChainRound round = lost_round();
    round.npc_type = 105.0;
    EXPECT_EQ(target_text(round, false, {}).text, u"Lvl ? Barb");
    tables.set_barbs(100, 120, u"Raiders %1"_s, -90);
    EXPECT_EQ(target_text(round, false, {}), (StyledText{u"Lvl 15 Raiders %1"_s, u""_s}));
    round.level = 27.8;
    EXPECT_EQ(target_text(round, true, {}),
              (StyledText{u"Lvl 27 Raiders %1"_s, u"color: #2ecc71; font-weight: 500;"_s}));
}

TEST_F(RoundLookOf, RewardsStandByKindAndKeepTheirOrderWithin)
{
    data::ChainRound round;
    for (const QString &unit : {u"Ebony"_s, u"key"_s, u"stone"_s, u"XP"_s, u"leather"_s, u"Min"_s,
                                u"gold"_s, u"Gems"_s, u""_s, u"CRYSTALS"_s})
        round.loot.push_back(loot_of(1.0, u"of "_s + unit, unit));
    EXPECT_THAT(names_of(rewards_of(round, false, {})),
                ElementsAre(u"of CRYSTALS"_s, u"of Gems"_s, u"of Min"_s, u"of XP"_s, u"of stone"_s,
                            u"of gold"_s, u"of Ebony"_s, u"of leather"_s, u"of key"_s, u"of "_s));
}

TEST_F(RoundLookOf, RewardsWithoutValueAreLeftOut)
{
    data::ChainRound round;
    for (const std::optional<double> value : {std::optional(0.0), std::optional<double>(),
                                              std::optional(std::nan("")), std::optional(2.0)})
        round.loot.push_back(loot_of(value, u"item"_s));
    EXPECT_EQ(rewards_of(round, false, {}).size(), 1u);
    EXPECT_EQ(reward_count(round, false, {}), 1u);
}

TEST_F(RoundLookOf, OnlyItemsWithoutANameAreCompleted)
{
    tables.set_item(1, 2, u"Gem"_s, u"gems"_s);
    data::ChainRound round = won_round();
    round.loot.push_back(loot_of_item(1.0, 2.0, 1.0));
    round.loot.back().name = u"Kept"_s;
    round.loot.back().unit = u"xp"_s;
    const auto rewards = rewards_of(round, false, {});
    EXPECT_THAT(names_of(rewards), ElementsAre(u"Gem"_s, u"Kept"_s));
    EXPECT_EQ(rewards[1].unit, u"xp");
}

TEST_F(RoundLookOf, TheRoundThatDestroyedAFortShowsTheFortsItems)
{
    tables.set_item(8, 9, u"Chest"_s, u"chest"_s);
    data::FortOfChain fort = fort_with(5, 10);
    data::ChainRound round = fort_round(1.0);
    round.loot = {loot_of(1.0, u"Own"_s)};
    EXPECT_THAT(names_of(rewards_of(round, true, fort)), ElementsAre(u"Own"_s)); // it is empty
    fort.loot = {loot_of_item(8.0, 9.0, 4.0), loot_of(1.0)};
    EXPECT_THAT(names_of(rewards_of(round, true, fort)), ElementsAre(u"Chest"_s, u""_s));
    EXPECT_EQ(reward_count(round, true, fort), 2u);
    EXPECT_THAT(names_of(rewards_of(round, false, fort)), ElementsAre(u"Own"_s));
    EXPECT_THAT(names_of(rewards_of(round, true, std::nullopt)), ElementsAre(u"Own"_s));
}

TEST_F(RoundLookOf, NumbersAreCutGroupedAndBounded)
{
    const auto digits_of = [](double value) {
        QString text = count_text(value);
        text.removeIf([](QChar c) { return c.isSpace(); });
        return text;
    };
    EXPECT_EQ(count_text(std::nullopt), u"");
    EXPECT_EQ(count_text(std::nan("")), u"");
    EXPECT_EQ(digits_of(0.9), u"0");
    EXPECT_EQ(digits_of(1234.9), u"1234");
    EXPECT_EQ(digits_of(std::numeric_limits<double>::infinity()), u"9000000000000000000");
    EXPECT_EQ(digits_of(-1e300), u"-9000000000000000000");
}

TEST_F(RoundLookOf, TheNumberCountsRoundsFromOne)
{
    data::ChainRound round;
    round.round_no = 4;
    EXPECT_EQ(round_look(17, round, {}, {}).number, u"17-5");
    round.round_no = std::numeric_limits<int>::max();
    EXPECT_EQ(round_look(17, round, {}, {}).number, u"17-2147483648");
}

TEST_F(RoundLookOf, AFortRoundIsTintedAsOneEvenIfItWasFree)
{
    data::ChainRound round = fort_round(1.0);
    round.is_free_ap = true;
    EXPECT_EQ(round_look(1, round, {}, {}).tint, RowTint::Fort);
    EXPECT_EQ(round_look(1, round_on_the_way_to_a_fort(), {}, {}).tint, RowTint::FreeAp);
    EXPECT_EQ(round_look(1, lost_round(), {}, {}).tint, RowTint::Plain);
}

TEST_F(RoundLookOf, MarkupInANameIsNoMarkupInTheToolTip)
{
    EXPECT_EQ(reward_tool_tip(loot_of(5.0)), u"");
    EXPECT_EQ(reward_tool_tip(loot_of(5.0, u"Gem"_s)), u"Gem\n5");
    const QString tip = reward_tool_tip(loot_of(5.0, u"<b>x</b>"_s));
    EXPECT_TRUE(tip.contains(u"&lt;b&gt;x&lt;/b&gt;")) << tip.toStdString();
}
