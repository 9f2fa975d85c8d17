#include "data/master/master_cache.h"
#include "support/local_zone.h"
#include "support/print_qt.h"
#include "support/report_builders.h"
#include "ui/forts/fort_texts.h"
#include "ui/keep/keep_texts.h"
#include "ui/parts/local_time.h"
#include "ui/trials/trial_texts.h"

#include <gmock/gmock.h>

#include <limits>

namespace tally::test {
namespace {

using namespace Qt::StringLiterals;
using namespace tally::ui;
using testing::ElementsAre;

// 2025-10-26 00:30 UTC; in Berlin half an hour before the clock goes back from 3 to 2.
constexpr double before_the_hour_comes_twice = 1'761'438'600.0;
constexpr double hour = 3600.0;

data::LootStat stat(const QString &unit, const QString &name, int pieces, double unit_value = 1.0)
{
    return {.item_type = 4.0,
            .item_subtype = 9.0,
            .name = name,
            .unit_value = unit_value,
            .unit = unit,
            .icon = {},
            .pieces = pieces,
            .total_value = static_cast<qint64>(pieces * unit_value)};
}

TEST(SessionTime, ReadsAsOnTheUsersClock)
{
    const LocalZone zone("Europe/Berlin");
    const double start = before_the_hour_comes_twice;
    EXPECT_EQ(session_time_text({start, start + hour}), u"2025-10-26  02:30–02:30"_s);
    EXPECT_EQ(session_time_text({start, start + 24 * hour}),
              u"2025-10-26 02:30 → 2025-10-27 01:30"_s);
    EXPECT_EQ(session_time_text({start - 3 * hour, start}),
              u"2025-10-25 23:30 → 2025-10-26 02:30"_s);
}

TEST(LocalDays, LastAsLongAsTheClockSays)
{
    const LocalZone zone("Europe/Berlin");
    const auto hours = [](QDate day) {
        return (end_of_local_day(day) + 1.0 - start_of_local_day(day)) / hour;
    };
    EXPECT_EQ(hours({2025, 10, 26}), 25.0);
    EXPECT_EQ(hours({2025, 3, 30}), 23.0);
    EXPECT_EQ(start_of_local_day({2025, 10, 26}), before_the_hour_comes_twice - 2.5 * hour);
}

TEST(LocalDays, BeginWhereMidnightDoesNotExist)
{
    const LocalZone zone("America/Santiago"); // 2025-09-07: from 0 to 1 o'clock
    EXPECT_EQ(local_time_text(start_of_local_day({2025, 9, 7}), u"yyyy-MM-dd HH:mm"_s),
              u"2025-09-07 01:00"_s);
}

TEST(LocalTime, SurvivesWhatIsNoTime)
{
    for (const double nonsense :
         {0.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
        EXPECT_EQ(local_time_text(nonsense, u"yyyy"_s), u"?"_s);
    EXPECT_TRUE(local_date(1e300).isValid());
}

TEST(LootCards, SayEachKindOfItemInItsOwnWords)
{
    const struct {
        data::LootStat stat;
        LootCardTexts texts;
    } cases[] = {
        {stat(u"Gems"_s, u"Bag"_s, 300, 100.0), {u"Gem"_s, u"30 000"_s}},
        {stat(u"min"_s, u"Universal speedup"_s, 9, 60.0), {u"Universal"_s, u"9.0 H / 0.38 D"_s}},
        {stat(u"min"_s, u"Troop training"_s, 1, 90.0), {u"Troop training"_s, u"1.5 H / 0.06 D"_s}},
        {stat(u"chest"_s, u"Normal"_s, 1280), {u"Normal chest"_s, u"1 280 (5.000 L)"_s}},
        {stat(u"chest"_s, u"Epic"_s, 1), {u"Epic chest"_s, u"1 (0.250 L)"_s}},
        {stat(u"chest"_s, u"Of gold"_s, 3), {u"Of gold"_s, u"3 (3.000 L)"_s}},
        {stat(u"ap"_s, u"Basic potion"_s, 3), {u"AP Recovery"_s, u"300"_s}},
        {stat(u"ap"_s, u"Emergency potion"_s, 3), {u"AP Recovery"_s, u"150"_s}},
        {stat(u"ap"_s, u"Basic potion"_s, 3, 500.0), {u"AP Recovery"_s, u"1 500"_s}},
        {stat(u"ap"_s, u"Tea"_s, 3), {u"AP Recovery"_s, u"3"_s}},
        {stat(u""_s, u"Starlight Sculpture"_s, 2), {u"Sculpture"_s, u"2"_s}},
        {stat(u"buff"_s, u"Enhanced Attack"_s, 2), {u"Attack 5%"_s, u"2"_s}},
        {stat(u""_s, u""_s, 2), {u"Type=4/Sub=9"_s, u"2"_s}},
    };
    for (const auto &[stat, texts] : cases) {
        const LootCardTexts shown = loot_card_texts(stat);
        EXPECT_EQ(shown.name, texts.name);
        EXPECT_EQ(shown.amount, texts.amount);
    }
}

TEST(LootCards, StandInTheOrderOfTheirKinds)
{
    std::vector<data::LootStat> stats;
    const std::pair<QString, QString> kinds[] = {
        {u"wood"_s, u"Wood"_s},        {u"key"_s, u"Silver key"_s}, {u"key"_s, u"Golden key"_s},
        {u"chest"_s, u"Epic chest"_s}, {u"AP"_s, u"Potion"_s},      {u"chest"_s, u"Elite"_s},
        {u"min"_s, u"Training"_s},     {u"min"_s, u"Universal"_s},  {u"gems"_s, u"Gem"_s},
        {u"stone"_s, u"None of it"_s}};
    for (const auto &[unit, name] : kinds)
        stats.push_back(stat(unit, name, static_cast<int>(stats.size()) + 1));
    stats.push_back(stat(u"stone"_s, u"Stone"_s, 50));
    stats.at(9).pieces = 0;
    std::vector<std::string> names;
    for (const data::LootStat &each : loot_card_order(stats))
        names.push_back(each.name.toStdString());
    EXPECT_THAT(names, ElementsAre("Gem", "Universal", "Training", "Elite", "Epic chest", "Potion",
                                   "Golden key", "Silver key", "Stone", "Wood"));
}

std::vector<std::string> texts_of(const ItemRow &row)
{
    std::vector<std::string> texts;
    for (const RowCell &cell : row.cells)
        texts.push_back(cell.text.toStdString());
    return texts;
}

TEST(ReportRows, SayWhatTheReportsHold)
{
    const LocalZone zone("Europe/Berlin");
    const double time = before_the_hour_comes_twice + 5.5;
    EXPECT_THAT(texts_of(kill_row({u"f"_s, {}, time, 3, 4, 0.372, {}})),
                ElementsAre("2025-10-26 02:30:05", "?", "(3, 4)", "0.37%"));
    EXPECT_THAT(texts_of(fort_row({u"f"_s, time, 7, 3, {}, 90, {}})),
                ElementsAre("2025-10-26 02:30:05", "Lv 7", "—", "90%"));
    const ItemRow keep = keep_kill_row({u"f"_s, u"Bargha"_s, time, {}, 4, 37.125});
    EXPECT_THAT(texts_of(keep), ElementsAre("2025-10-26 02:30", "Bargha", "?", "37.13%"));
    EXPECT_EQ(keep.cells.front().value, QVariant(qint64{1'761'438'605'500}));
    EXPECT_THAT(texts_of(battle_round_row({2, {}, 25.0, {}, 1e15, true, {}})),
                ElementsAre("2", "🏰 FORT (Lv 25)", "1000000000000000", "—"));
    EXPECT_EQ(battle_round_row({0, {}, 25.0, {}, {}, false, {}}).cells.at(1).text, u"Barb Lv 25"_s);
    EXPECT_EQ(battle_round_row({0, {}, {}, {}, {}, false, {}}).cells.at(1).text, u"Barb"_s);
    const auto strip = strip_items({item(4.0, {}, 1e30)});
    EXPECT_EQ(strip.front(), (data::LootStripItem{4, 0, std::numeric_limits<qint64>::max()}));
}

TEST(ReportHeadlines, TellRolesAndKeepNamesPlain)
{
    EXPECT_TRUE(fort_headline({u"f"_s, 1.0, 7, {}, {}, 90, {}}).contains(u"primary attacker"));
    EXPECT_TRUE(fort_headline({u"f"_s, 1.0, 7, {}, {}, 89, {}}).contains(u"supporter"));
    const QString battle = battle_headline(
        data::FortBattle{u"Persistent.Mail.0123456789.987"_s, 7.0, {}, u"<b>"_s, {}});
    EXPECT_EQ(battle, u"<h3>Battle detail — chain Mail.0123456789.987</h3><b>Player:</b> &lt;b&gt; "
                      "&nbsp;&nbsp; <b>Commanders:</b> H7 + —"_s);
    EXPECT_EQ(
        keep_kill_headline({u"<i>"_s, 0.0, {}, {}, std::vector<data::TrialParticipantRow>(2)}),
        u"<b>&lt;i&gt;</b> &nbsp;·&nbsp; ? &nbsp;·&nbsp; ? &nbsp;·&nbsp; 2 participants"_s);
}

TEST(KeepBand, CountsDownInWholeMinutes)
{
    const std::pair<double, QString> cases[] = {{59.0, u"Ready in 0min"_s},
                                                {3599.9, u"Ready in 59min"_s},
                                                {3600.0, u"Ready in 1h 0min"_s},
                                                {0.0, u"Ready!"_s},
                                                {-5.0, u"Ready!"_s},
                                                {68 * hour, u"Ready in 68h 0min"_s}};
    for (const auto &[seconds, text] : cases)
        EXPECT_EQ(countdown_text(seconds), text);
    EXPECT_EQ(keep_band(500.0, true).text, u"🏰 Barbarian Keep — READY to kill!"_s);
}

} // namespace
} // namespace tally::test
