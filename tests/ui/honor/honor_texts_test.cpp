#include "ui/honor/discrepancy_chart.h"
#include "ui/honor/honor_look.h"
#include "ui/honor/honor_texts.h"

#include "support/local_zone.h"
#include "support/print_qt.h"

#include <gmock/gmock.h>

namespace tally::honor {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(HonorTexts, TheAgeOfAReadingIsToldInItsLargestUnit)
{
    const test::LocalZone zone("UTC");
    constexpr double read_at = 1'790'028'000.5; // 22:00:00
    const std::pair<double, QString> cases[] = {
        {0.4, u"0s ago"_s},         {59.9, u"59s ago"_s},   {60.0, u"1 min ago"_s},
        {3'599.0, u"59 min ago"_s}, {3'600.0, u"1h ago"_s}, {90'000.0, u"25h ago"_s},
        {-5.0, u"-5s ago"_s},
    };
    for (const auto &[age, text] : cases)
        EXPECT_EQ(read_text(read_at, read_at + age), text + u" (22:00:00)"_s);
    EXPECT_EQ(read_text({}, read_at), u"---");
}

TEST(HonorTexts, WhatReportsEarnedHasItsSignAndLook)
{
    const QLocale before;
    QLocale::setDefault(QLocale(u"en_US"_s));
    EXPECT_EQ(delta_text(1'250), (StyledText{u"+1 250"_s, u"delta_pos"_s}));
    EXPECT_EQ(delta_text(0), (StyledText{u"+0"_s, u"muted"_s}));
    EXPECT_EQ(delta_text(-7), (StyledText{u"-7"_s, u"delta_neg"_s}));
    QLocale::setDefault(before);
}

/// "rank|name:look|gap:look" of each row.
QStringList rows_of(const std::vector<OvertakeRow> &targets, std::optional<int> rank, bool has_roll)
{
    HonorSnapshot snapshot;
    snapshot.rank = rank;
    if (has_roll)
        snapshot.leaderboard.resize(1);
    QStringList rows;
    for (const OvertakeTexts &row : overtake_texts(targets, snapshot))
        rows << u"%1|%2:%3|%4:%5"_s.arg(row.rank, row.name.text, row.name.look, row.gap.text,
                                        row.gap.look);
    return rows;
}

TEST(HonorTexts, OvertakeRowsOfEveryState)
{
    const QString nobody = u"|:ot_name|:gap_far"_s;
    const auto unknown = [](const QString &rank) {
        return rank + u"|???:ot_name_missing|need sync:gap_far"_s;
    };
    EXPECT_EQ(
        rows_of({{7, u"Far"_s, 0, 1'000}, {8, u"Near"_s, 0, 999}, {9, u"Past"_s, 0, 0}}, 10, true),
        (QStringList{u"#9|Past:ot_name|OVERTAKEN!:gap_ok"_s, u"#8|Near:ot_name|+999:gap_near"_s,
                     u"#7|Far:ot_name|+1 000:gap_far"_s}));
    EXPECT_EQ(rows_of({{1, u"Top"_s, 0, -5}}, 2, true),
              (QStringList{u"#1|Top:ot_name|OVERTAKEN!:gap_ok"_s, nobody, nobody}));
    EXPECT_EQ(rows_of({}, 1, true), (QStringList{nobody, nobody, nobody}));
    EXPECT_EQ(rows_of({}, 3, false), (QStringList{unknown(u"#2"_s), unknown(u"#1"_s), nobody}));
    EXPECT_EQ(rows_of({}, {}, false),
              (QStringList{unknown(u"---"_s), unknown(u"---"_s), unknown(u"---"_s)}));
    EXPECT_EQ(rows_of({}, {}, true), (QStringList{nobody, nobody, nobody}));
}

TEST(HonorLook, SizesFollowTheTypeButNotBelowTheirFloor)
{
    const auto size_of = [](int font_size, const QString &label) {
        const QRegularExpression rule(u"QLabel#%1 \\{[^}]*font-size: (\\d+)pt"_s.arg(label));
        return rule.match(HonorLook(0, font_size).panel()).captured(1).toInt();
    };
    EXPECT_EQ(size_of(26, u"big"_s), 62);
    EXPECT_EQ(size_of(9, u"big"_s), 21);
    EXPECT_EQ(size_of(8, u"muted"_s), 7);
    EXPECT_EQ(size_of(8, u"status"_s), 6);
    EXPECT_EQ(size_of(12, u"gap_near"_s), 11);
}

TEST(HonorHistory, CellsAreEmptyOrZeroWhereTheLogHasNothing)
{
    const test::LocalZone zone("UTC");
    EXPECT_EQ(history_cells({1'790'028'000.0, 611'350, 612'000, 630, 611'980, 20}),
              (QStringList{u"2026-09-21 22:00:00"_s, u"611 350"_s, u"612 000"_s, u"+630"_s,
                           u"611 980"_s, u"+20"_s}));
    EXPECT_EQ(history_cells({0.0, {}, {}, {}, {}, {}}), (QStringList{{}, {}, {}, u"0"_s, {}, {}}));
    EXPECT_EQ(history_cells({0.0, {}, {}, 0, {}, 0}).mid(3), (QStringList{u"+0"_s, {}, u"0"_s}));
    EXPECT_EQ(history_cells({0.0, {}, {}, 0, {}, -1'020}).last(), u"-1 020");
    EXPECT_EQ(history_values({0.0, 611'350, {}, {}, {}, -20}),
              (QVariantList{QString(), 611'350, QVariant(), 0, QVariant(), -20}));
}

TEST(HonorHistory, TheLineRunsFromTheOldestReadingAndTellsItsSum)
{
    const auto row = [](double time, std::optional<int> discrepancy) {
        return data::HonorLogRow{time, {}, {}, {}, {}, discrepancy};
    };
    const auto points =
        discrepancy_points({row(400, 20), row(300, {}), row(200, -10), row(100, 122)});
    EXPECT_THAT(points, ElementsAre(DiscrepancyPoint{100, 122}, DiscrepancyPoint{200, -10},
                                    DiscrepancyPoint{400, 20}));
    EXPECT_EQ(discrepancy_summary(points), u"3 readings, last +20, sum +132");
    EXPECT_EQ(discrepancy_summary({{1, -7}}), u"1 reading, last -7, sum -7");
    EXPECT_EQ(discrepancy_summary({}), u"No reading has been held against its estimate yet.");
}

TEST(DiscrepancyChart, PlacesPointsByTimeAroundTheirZero)
{
    const QRectF area(10, 20, 300, 100);
    const std::vector<DiscrepancyPoint> points{{100, 30}, {200, -20}, {400, 0}};
    EXPECT_THAT(chart_places(points, area),
                ElementsAre(QPointF(10, 20), QPointF(110, 120), QPointF(310, 80)));
    EXPECT_EQ(zero_height(points, area), 60);
    EXPECT_THAT(chart_places({{5, 8}}, area), ElementsAre(QPointF(160, 20)));
    EXPECT_THAT(chart_places({{5, 0}, {6, 0}}, area),
                ElementsAre(QPointF(10, 70), QPointF(310, 70)));
    EXPECT_THAT(chart_places({}, area), IsEmpty());
}

} // namespace
} // namespace tally::honor
