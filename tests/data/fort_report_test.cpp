#include "data/mail/fort_report.h"

#include "mail_encoder.h"
#include "support/print_qt.h"

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::sample;
using namespace Qt::StringLiterals;
using data::FortReport;

namespace {

constexpr std::optional<FortReport> (*fort_in)(QByteArrayView) = data::parse_fort;

QByteArray loot(double type = 4)
{
    return entry("loot",
                 map({entry(1.0, map({entry("Type", number(type)), entry("Value", number(30))}))}));
}

QByteArray fort(const QByteArray &body, const QByteArray &root = {},
                const char *title = "Barbarian Fort reward",
                const QByteArray &attachments = entry(1.0, map(loot())))
{
    return mail(entry("type", text("System")) + root + entry("attachments", map(attachments)) +
                entry("body", map(entry("title", text(title)) + body)));
}

FortReport report_of(const QByteArray &body, const QByteArray &root = {})
{
    const auto report = fort_in(fort(body, root));
    EXPECT_TRUE(report);
    return report.value_or(FortReport());
}

} // namespace

TEST(FortReport, RefusesWhatIsNoFortReward)
{
    EXPECT_TRUE(fort_in(fort({})));
    EXPECT_TRUE(fort_in(fort({}, {}, "barbarian fORT")));
    EXPECT_FALSE(fort_in({}));
    EXPECT_FALSE(fort_in(fort({}, {}, "The Barbarian Fort")));
    EXPECT_FALSE(fort_in(fort({}, {}, "Barbarian Fort", {})));
    EXPECT_FALSE(fort_in(fort({}, {}, "Barbarian Fort",
                              entry(1.0, map({entry("loot", map({entry(1.0, map())}))})))));
    EXPECT_FALSE(fort_in(fort({}, entry("type", text("Battle")))));
    EXPECT_FALSE(data::parse_fort(u"/no/such/file"_s));
}

TEST(FortReport, LootOfAllAttachmentsIsKeptInOrder)
{
    const auto report = fort_in(
        fort({}, {}, "Barbarian Fort",
             entry(2.0, map(loot(2))) + entry(3.0, text("x")) + entry(10.0, map(loot(10)))));
    ASSERT_TRUE(report);
    ASSERT_EQ(report->loot.size(), 2U);
    EXPECT_EQ(report->loot[0].item_type, 10.0);
    EXPECT_EQ(report->loot[1].item_type, 2.0);
    EXPECT_EQ(report->loot[1].item_subtype, std::nullopt);
    EXPECT_EQ(report->loot[1].value, 30.0);
}

TEST(FortReport, PlaceTimeAndIdAreRead)
{
    const FortReport report =
        report_of(entry("position", map({entry("X", number(1503)), entry("Y", text("-1503"))})),
                  entry("id", text("abc")) + entry("time", number(1.7e15)));
    EXPECT_EQ(report.tile_x, 251);
    EXPECT_EQ(report.tile_y, -251);
    EXPECT_EQ(report.mail_id, u"abc");
    EXPECT_EQ(report.event_time, 1.7e9);
    const FortReport odd = report_of(entry("targetName", map()) + entry("position", number(5)),
                                     entry("time", text("soon")));
    EXPECT_EQ(odd.tile_x, std::nullopt);
    EXPECT_EQ(odd.fort_level, 0);
    EXPECT_EQ(odd.event_time, 0.0);
    EXPECT_EQ(report_of(entry("position", map({entry("x", number(6))}))).tile_x, 0);
}

TEST(FortReport, LevelIsTheFirstNumberBehindTheWord)
{
    const std::pair<const char *, int> levels[] = {{"Level 7 Barbarian Fort", 7},
                                                   {"Fort LEVEL10", 10},
                                                   {"level \t\n 3 level 4", 3},
                                                   {"Fort", 0},
                                                   {"", 0},
                                                   {"Level -3", 0},
                                                   {"Level 99999999999", 0}};
    for (const auto &[name, level] : levels)
        EXPECT_EQ(report_of(entry("targetName", text(name))).fort_level, level) << name;
}

TEST(FortReport, DamageIsThePercentageBehindTheWord)
{
    const std::pair<const char *, int> damages[] = {{"You dealt 37 % of it", 37},
                                                    {"DEALT  5%", 5},
                                                    {"dealt37 %", 0},
                                                    {"dealt 3.7%", 0},
                                                    {"dealt 37", 0},
                                                    {"dealt 99999999999%", 0}};
    for (const auto &[content, damage] : damages)
        EXPECT_EQ(report_of(entry("content", text(content))).damage_percent, damage) << content;
}
