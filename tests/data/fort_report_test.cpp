#include "mail/fort_report.h"

#include "mail_encoder.h"
#include "support/hostile_numbers.h"
#include "support/print_qt.h"

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::sample;
using namespace Qt::StringLiterals;
using data::FortReport;

namespace {

std::optional<FortReport> fort_in(QByteArrayView mail)
{
    return data::parse_fort(mail);
}

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

struct TextCase {
    const char *text;
    int number;
};

class FortLevel : public testing::TestWithParam<TextCase> {};
class FortDamage : public testing::TestWithParam<TextCase> {};

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
    const FortReport bare = report_of({}, entry("time", text("soon")));
    EXPECT_EQ(bare.tile_x, std::nullopt);
    EXPECT_EQ(bare.event_time, 0.0);
    EXPECT_EQ(report_of(entry("position", map({entry("x", number(6))}))).tile_x, 0);
}

TEST(FortReport, TilesThatNoIntHoldsAreMissing)
{
    for (const double hostile : test::hostile_numbers) {
        const FortReport report = report_of(
            entry("position", map({entry("X", number(hostile * 6)), entry("Y", number(6))})));
        EXPECT_EQ(report.tile_x, std::nullopt) << hostile;
        EXPECT_EQ(report.tile_y, 1);
    }
}

TEST_P(FortLevel, IsTheFirstNumberBehindTheWord)
{
    EXPECT_EQ(report_of(entry("targetName", text(GetParam().text))).fort_level, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(FortReport, FortLevel,
                         testing::Values(TextCase{"Level 7 Barbarian Fort", 7},
                                         TextCase{"Fort LEVEL10", 10},
                                         TextCase{"level \t\n 3 level 4", 3}, TextCase{"Fort", 0},
                                         TextCase{"", 0}, TextCase{"Level -3", 0},
                                         TextCase{"Level 99999999999", 0}));

TEST_P(FortDamage, IsThePercentageBehindTheWord)
{
    EXPECT_EQ(report_of(entry("content", text(GetParam().text))).damage_percent, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(FortReport, FortDamage,
                         testing::Values(TextCase{"You dealt 37 % of it", 37},
                                         TextCase{"DEALT  5%", 5}, TextCase{"dealt37 %", 0},
                                         TextCase{"dealt 3.7%", 0}, TextCase{"dealt 37", 0},
                                         TextCase{"dealt 99999999999%", 0}));

TEST(FortReport, FactsOfOtherTypesTakeTheirDefaults)
{
    const FortReport report = report_of(entry("targetName", map()) + entry("content", number(5)) +
                                        entry("position", number(5)));
    EXPECT_EQ(report.fort_level, 0);
    EXPECT_EQ(report.damage_percent, 0);
    EXPECT_EQ(report.tile_y, std::nullopt);
}

TEST(FortReport, MailCutAnywhereIsNoReport)
{
    const QByteArray whole = fort(entry("content", text("dealt 37 %")));
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(fort_in(QByteArray(whole.constData(), size)));
}
