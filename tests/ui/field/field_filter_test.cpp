#include "support/print_qt.h"
#include "ui/field/field_cards.h"
#include "ui/field/field_filter.h"
#include "ui/field/tree_columns.h"

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::ui;
using namespace Qt::StringLiterals;

namespace {

constexpr double day = 1'740'787'200.0; // 2025-03-01 00:00 UTC

} // namespace

TEST(FieldFilter, ReadsWhatWasTypedAsUtcAndTakesAnythingElseForNoLimit)
{
    const struct {
        QString date;
        QString time;
        std::optional<double> seconds;
    } cases[] = {
        {u"2025-03-01"_s, u"00:00"_s, day},
        {u" 2025-03-01 "_s, u" 07:05 "_s, day + 7 * 3600 + 300},
        {u"2025-03-01"_s, u"23:59:30"_s, day + 86'370},
        {u"2025-03-01"_s, u""_s, day + 12 * 3600},               // the default
        {u"2025-03-30"_s, u"02:30"_s, day + 29 * 86'400 + 9000}, // a gap of many local clocks
        {u""_s, u"10:00"_s, {}},
        {u"2024-13-01"_s, u"00:00"_s, {}},
        {u"1.3.2025"_s, u"00:00"_s, {}},
        {u"2025-03-01"_s, u"7:05"_s, {}},
        {u"2025-03-01"_s, u"24:00"_s, {}},
        {u"2025-03-01"_s, u"noon"_s, {}},
    };
    for (const auto &[date, time, seconds] : cases)
        EXPECT_EQ(typed_moment({date, time}, u"12:00:00"_s), seconds)
            << qPrintable(date) << " " << qPrintable(time);
}

TEST(FieldCards, ShowADashWhereThereIsNoRate)
{
    EXPECT_EQ(field_cards({.attacks = 1'200, .enemies = 2, .kvk = 1}),
              (FieldCardTexts{u"0"_s, u"1 200"_s, u"2"_s, u"1"_s, u"—"_s, u"—"_s, u"0"_s, u"0"_s}));
}

TEST(KeptColumns, OnlyAWholeArrangementIsTaken)
{
    const ColumnArrangement arrangement{{0, 2, 1}, {280, 60, 4000}};
    EXPECT_EQ(arrangement_in(arrangement_text(arrangement), 3), arrangement);
    EXPECT_EQ(arrangement_in(u"0:1 1:999999 2:60", 3),
              (ColumnArrangement{{0, 1, 2}, {16, 4000, 60}}));
    for (const QString &text :
         {u""_s, u"0:280 1:60"_s, u"0:280 1:60 1:60"_s, u"0:280 1:60 3:60"_s, u"1:60 0:280 2:60"_s,
          u"0:280 1 2:60"_s, u"0:a 1:60 2:60"_s, u"0:280 1:60 2:60 -1:5"_s})
        EXPECT_FALSE(arrangement_in(text, 3)) << qPrintable(text);
}
