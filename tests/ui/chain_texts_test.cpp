#include "data/master/master_cache.h"
#include "support/print_qt.h"
#include "support/print_records.h"
#include "ui/chains/chain_cards.h"
#include "ui/chains/chain_figures.h"
#include "ui/chains/chain_texts.h"
#include "ui/chains/hero_pair_list.h"
#include "ui/parts/value_texts.h"

#include <QScopeGuard>

#include <gmock/gmock.h>

#include <limits>

using namespace tally;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

std::string card(const char *key, const data::ChainSummary &summary)
{
    const ui::ChainCardTexts texts = ui::chain_cards(summary);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (ui::chain_card_row.at(i).key == QLatin1StringView(key))
            return texts.at(i).toStdString();
    }
    return "no such card";
}

data::LootStat loot(double subtype, int battles, qint64 total_value)
{
    data::LootStat row;
    row.item_type = 4.0;
    row.item_subtype = subtype;
    row.pieces = 3;
    row.total_value = total_value;
    row.battles = battles;
    return row;
}

std::vector<std::string> entry_texts(const std::vector<data::PlayerRow> &accounts)
{
    std::vector<std::string> texts;
    for (const ui::PlayerEntry &entry : ui::player_entries(accounts))
        texts.push_back(entry.text.toStdString());
    return texts;
}

} // namespace

TEST(ChainCards, EachShowsItsShareOfTheSummary)
{
    using Summary = data::ChainSummary;
    const struct {
        const char *key;
        std::vector<std::pair<int Summary::*, int>> counts;
        const char *text;
        double total_dur = 0.0;
        double avg_dur = 0.0;
    } cases[] = {
        {"chains", {{&Summary::files, 1'234'567}}, "1 234 567"},
        {"rounds", {{&Summary::battles, 1'000}}, "1 000"},
        {"wins", {{&Summary::battles, 3'000}, {&Summary::wins, 2'000}}, "2 000\n(66.7%)"},
        {"escapes", {{&Summary::battles, 8}, {&Summary::escapes, 1}}, "1\n(12.5%)"},
        {"escapes", {{&Summary::battles, 8}}, "0\n(0.0%)"},
        {"kill", {{&Summary::battles, 5}}, "0"},
        {"kill", {{&Summary::battles, 5}, {&Summary::kills, 4}}, "4"},
        {"barbs_per_ap", {{&Summary::kills, 7}, {&Summary::chains_ap_only, 3}}, "2.33"},
        {"barbs_per_ap", {{&Summary::kills, 7}}, "—"},
        {"active", {}, "1h 02m", 3'725.9},
        {"honor", {{&Summary::honor, 12'340}}, "12 340"},
        {"avg_chain", {}, "1m 01s", 0.0, 61.0},
        {"avg_round", {{&Summary::battles, 4}}, "12.5s", 50.0},
        {"avg_round", {}, "—", 50.0},
        {"rounds_per_hour", {{&Summary::battles, 4}}, "288.0", 50.0},
        {"rounds_per_hour", {}, "—", 50.0},
        {"rounds_per_hour", {{&Summary::battles, 4}}, "—"},
        {"bonus_ap", {{&Summary::free_ap, 1'500}}, "1 500"},
        {"tactical", {{&Summary::tactical, 2}}, "2"},
    };
    for (const auto &[key, counts, text, total_dur, avg_dur] : cases) {
        Summary summary;
        for (const auto &[count, number] : counts)
            summary.*count = number;
        summary.total_dur = total_dur;
        summary.avg_dur = avg_dur;
        EXPECT_EQ(card(key, summary), text) << key;
    }
}

TEST(ChainCards, WithoutChainsTheyShowZeroOrNothing)
{
    EXPECT_THAT(ui::chain_cards({}), ElementsAre(u"0", u"0", u"—", u"—", u"—", u"—", u"—", u"—",
                                                 u"—", u"—", u"—", u"—", u"—"));
}

TEST(ChainTexts, ADurationShowsItsTwoLargestUnits)
{
    using Limits = std::numeric_limits<double>;
    for (const auto &[seconds, text] :
         {std::pair(0.0, "—"), std::pair(-5.0, "—"), std::pair(0.9, "—"), std::pair(1.0, "1s"),
          std::pair(59.9, "59s"), std::pair(60.0, "1m 00s"), std::pair(3'599.0, "59m 59s"),
          std::pair(3'600.0, "1h 00m"), std::pair(360'060.0, "100h 01m"),
          std::pair(Limits::quiet_NaN(), "—"), std::pair(-Limits::infinity(), "—")})
        EXPECT_EQ(ui::duration_text(seconds).toStdString(), text) << seconds;
    EXPECT_TRUE(ui::duration_text(Limits::max()).endsWith(u'm'));
}

TEST(ChainTexts, ABestChainIsToldOnlyWithItsStart)
{
    using Best = std::optional<data::BestChain>;
    for (const auto &[best, line] : {
             std::pair(Best(), "L: no data"),
             std::pair(Best({u"file"_s, 12, 70.0, {}}), "L: no data"),
             std::pair(Best({u"file"_s, 12, 70.0, 1'700'000'000.7}),
                       "L: 12 rounds in 1m 10s (2023-11-14 22:13 UTC)"),
             std::pair(Best({u"file"_s, 12, 0.0, 0.0}), "L: 12 rounds in — (1970-01-01 00:00 UTC)"),
             std::pair(Best({u"file"_s, 12, 0.0, 1e300}), "L: 12 rounds in — (?)"),
         })
        EXPECT_EQ(ui::best_chain_line(u"L"_s, best).toStdString(), line);
}

TEST(ChainTexts, TheHighestBarIsTheHourOfMostChains)
{
    const auto axis = u"\n 0  3  6  9  12 15 18 21 "_s;
    EXPECT_EQ(ui::sparkline({}), u"["_s + QString(24, u' ') + u']' + axis);
    std::array<int, 24> hours = {0, 1, 2, 3, 4, 5, 6, 7, 8};
    hours[23] = 8;
    EXPECT_EQ(ui::sparkline(hours), u"[ ▁▂▃▄▅▆▇█"_s + QString(14, u' ') + u"█]"_s + axis);
    hours = {1'000'000, 62'499, 62'500};
    EXPECT_EQ(ui::sparkline(hours), u"[█ ▁"_s + QString(21, u' ') + u']' + axis);
}

TEST(ChainFilters, TheMinuteShownBelongsToThePeriod)
{
    const auto filter = ui::chain_filter(
        1.0, {QDate(2023, 11, 14), QTime(22, 13), QDate(2023, 11, 15), QTime(23, 59)}, 77.0);
    EXPECT_EQ(filter, (ui::ChainFilter{1.0, 1'699'999'980.0, 1'700'092'800.0, 77.0}));
}

TEST(PlayerEntries, NoTwoHaveTheSameText)
{
    EXPECT_THAT(entry_texts({}), ElementsAre("All players"));
    EXPECT_THAT(entry_texts({{1.0, u"Bob"_s, 9},
                             {2.0, {}, 8},
                             {3.0, u"Bob"_s, 7},
                             {12'345'678'901.0, u"Bob"_s, 6},
                             {5.0, u"ID 2"_s, 5},
                             {6.0, u"%1 (%2)"_s, 4},
                             {7.0, u"All players"_s, 3},
                             {8.0, u"Bob (3)"_s, 2}}),
                ElementsAre("All players", "Bob", "ID 2", "Bob (3)", "Bob (12345678901)",
                            "ID 2 (5)", "%1 (%2)", "All players (7)", "Bob (3) (8)"));
}

TEST(PlayerEntries, TheChosenOneStaysWhileHisAccountExists)
{
    const auto none = ui::player_entries({});
    const auto two = ui::player_entries({{1.0, u"Ada"_s, 9}, {2.0, u"Bob"_s, 8}});
    EXPECT_EQ(ui::chosen_player(none, {}), 0U);
    EXPECT_EQ(ui::chosen_player(two, {}), 1U);
    EXPECT_EQ(ui::chosen_player(two, {u"Bob"_s, 2.0}), 2U);
    EXPECT_EQ(ui::chosen_player(two, {u"All players"_s, {}}), 0U);
    EXPECT_EQ(ui::chosen_player(two, {u"Gone"_s, 3.0}), 1U);
    EXPECT_EQ(ui::chosen_player(none, {u"Gone"_s, 3.0}), 0U);
    EXPECT_EQ(two.at(2).id, 2.0);
    EXPECT_EQ(two.at(0).id, std::nullopt);
    const auto of_one_name = ui::player_entries({{2.0, u"Bob"_s, 9}, {1.0, u"Bob"_s, 8}});
    EXPECT_EQ(ui::chosen_player(of_one_name, {u"Bob"_s, 1.0}), 2U);
    EXPECT_EQ(ui::chosen_player(of_one_name, {u"Bob"_s, 3.0}), 1U);
}

TEST(HeroPairs, AHeroWithoutANameShowsHisId)
{
    data::MasterCache &master = data::MasterCache::instance();
    const auto forget = qScopeGuard([&master] { master.clear(); });
    master.load_json(u"heroes"_s, R"({"heroes": {"7": {"name": "Ada %2"}}})");
    EXPECT_EQ(ui::hero_pair_text({7, 8, 1'234}), u"Ada %2 + H8\n1234 chains"_s);
}

TEST(LootRows, ANameThatArrivedLaterBringsItsValue)
{
    data::MasterCache &master = data::MasterCache::instance();
    const auto forget = qScopeGuard([&master] { master.clear(); });
    master.load_json(u"items"_s, R"({"items": {
        "4.0_1.0": {"name": "Speedup", "unit_value": 60, "unit": "min", "icon": "s.webp"},
        "4.0_2.0": {"name": "Other", "unit_value": 5}}})");
    data::LootStat known = loot(2.0, 1, 3);
    known.name = u"Known"_s;
    const auto rows = ui::loot_rows({loot(1.0, 2, 3), known, loot(3.0, 0, 3)});
    data::LootStat named = loot(1.0, 2, 180);
    named.name = u"Speedup"_s;
    named.unit_value = 60.0;
    named.unit = u"min"_s;
    named.icon = u"s.webp"_s;
    EXPECT_THAT(rows, ElementsAre(named, known, loot(3.0, 0, 3)));
}

TEST(LootRows, WhatDropsMostOftenComesFirst)
{
    EXPECT_THAT(ui::loot_rows({loot(4.0, 1, 0), loot(3.0, 2, 5), loot(1.0, 2, 9), loot(2.0, 2, 5)}),
                ElementsAre(loot(1.0, 2, 9), loot(2.0, 2, 5), loot(3.0, 2, 5), loot(4.0, 1, 0)));
}
