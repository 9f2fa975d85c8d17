#include "data/master/master_cache.h"
#include "support/local_zone.h"
#include "support/print_qt.h"
#include "ui/items/item_pictures.h"
#include "ui/items/item_row_model.h"
#include "ui/items/item_row_table.h"
#include "ui/items/picture_caches.h"
#include "ui/parts/local_dates.h"
#include "ui/parts/local_time.h"
#include "ui/parts/table_export.h"

#include <QAbstractItemModelTester>
#include <QDateEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

namespace tally::test {
namespace {

using namespace Qt::StringLiterals;
using namespace tally::ui;

/// Rows with these numbers, each with loot in an amount of its own.
std::vector<ItemRow> rows_from(int first, int count)
{
    std::vector<ItemRow> rows;
    for (int number = first; number < first + count; ++number)
        rows.push_back({.key = QString::number(number),
                        .cells = {left_cell(u"row %1"_s.arg(number))},
                        .loot = {{4, 1, number}}});
    return rows;
}

class ReportTable : public testing::Test {
protected:
    ReportTable()
    {
        forget_item_pictures();
        table_.resize(600, 400);
        table_.set_rows(rows_from(100, 1000));
        table_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&table_));
    }

    QString at(int y) { return table_.key_of(table_.indexAt({5, y})); }

    ItemRowTable table_{
        {.name = u"Reports"_s, .export_name = u"reports"_s, .headers = {u"Name"_s, u"Loot"_s}},
        QString()};
};

TEST_F(ReportTable, PaintsStripsForTheRowsThatAreSeen)
{
    EXPECT_GT(picture_caches().tiles.size(), 2);
    EXPECT_LT(picture_caches().tiles.size(), 15);
}

TEST_F(ReportTable, ScrollsToTheEndOfAStripThatHasNoRoom)
{
    EXPECT_EQ(table_.columnWidth(1), table_.viewport()->width() - table_.columnWidth(0));
    std::vector<ItemRow> rows = rows_from(1, 1);
    rows.front().loot.resize(20);
    table_.set_rows(rows);
    QTest::qWait(0);
    EXPECT_GE(table_.columnWidth(1), 20 * 75 - 3 + 8);
    EXPECT_GT(table_.horizontalScrollBar()->maximum(), 0);
}

TEST_F(ReportTable, KeepsSelectionAndPlaceWhenRowsComeInAbove)
{
    table_.verticalScrollBar()->setValue(200);
    ASSERT_EQ(at(5), u"300"_s);
    ASSERT_TRUE(table_.select_key(u"302"_s));
    table_.set_rows(rows_from(97, 1003));
    EXPECT_EQ(at(5), u"300"_s);
    const QModelIndexList selected = table_.selectionModel()->selectedRows();
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(table_.key_of(selected.front()), u"302"_s);
}

TEST_F(ReportTable, KeepsItsPlaceToTheSide)
{
    std::vector<ItemRow> rows = rows_from(1, 50);
    rows.front().loot.resize(20);
    table_.set_rows(rows);
    QTest::qWait(0);
    ASSERT_TRUE(table_.select_key(u"3"_s));
    for (const int scrolled : {0, 4}) {
        table_.verticalScrollBar()->setValue(scrolled);
        table_.horizontalScrollBar()->setValue(500);
        rows.insert(rows.begin() + 1, rows_from(100 + scrolled, 1).front());
        table_.set_rows(rows);
        QTest::qWait(0);
        EXPECT_EQ(table_.horizontalScrollBar()->value(), 500);
    }
}

TEST_F(ReportTable, ShowsNewRowsToWhoLooksAtTheTop)
{
    ASSERT_TRUE(table_.select_key(u"101"_s));
    table_.set_rows(rows_from(80, 1020));
    EXPECT_EQ(at(5), u"80"_s);
    EXPECT_EQ(table_.key_of(table_.currentIndex()), u"101"_s);
    table_.set_rows({});
    EXPECT_FALSE(table_.currentIndex().isValid());
    EXPECT_FALSE(table_.select_key(u"101"_s));
}

TEST(PictureWatch, TellsOfMissingAndOfForgottenPictures)
{
    PictureWatch watch;
    watch.take_news();
    EXPECT_FALSE(watch.take_news());
    item_icon(u"none"_s, QString());
    EXPECT_TRUE(watch.take_news());
    forget_item_pictures();
    EXPECT_TRUE(watch.take_news());
    EXPECT_FALSE(watch.take_news());
}

TEST(ItemRowModel, ShowsLootBehindItsCells)
{
    data::MasterCache::instance().set_kind(
        u"items"_s,
        {{u"items"_s, QVariantMap{{u"4.0_1.0"_s, QVariantMap{{u"name"_s, u"Gem"_s}}}}}});
    ItemRowModel model({u"Name"_s, u"Loot"_s}, QString());
    const QAbstractItemModelTester tester(&model);
    model.set_rows(
        {{.key = u"a"_s, .cells = {right_cell(u"1 000"_s, 1000)}, .loot = {{4, 1, 7}, {4, 2, 8}}},
         {.key = u"b"_s, .cells = {left_cell(u"2"_s)}}});
    const QModelIndex loot = model.index(0, 1);
    EXPECT_EQ(model.index(0, 0).data(export_role), QVariant(1000));
    EXPECT_EQ(loot.data(export_role), QVariant(u"Gem x 7; Type=4/Sub=2 x 8"_s));
    EXPECT_EQ(loot.data(Qt::SizeHintRole).toSize(), QSize(72 * 2 + 3 + 8, 80));
    EXPECT_EQ(loot.data(Qt::DecorationRole).value<QPixmap>().deviceIndependentSize(),
              QSizeF(72 * 2 + 3, 72));
    for (const int role : {int(Qt::DecorationRole), int(Qt::SizeHintRole), export_role})
        EXPECT_FALSE(model.index(1, 1).data(role).isValid());
    data::MasterCache::instance().clear();
}

TEST(LocalDates, FollowMidnightWhereTheyWereNotChanged)
{
    const LocalZone zone("Europe/Berlin");
    double now = start_of_local_day({2025, 3, 30}) - 60.0;
    LocalDates dates([&now] { return now; });
    EXPECT_EQ(dates.from(), start_of_local_day({2025, 3, 22}));
    EXPECT_EQ(dates.to(), end_of_local_day({2025, 3, 29}));
    QSignalSpy new_day(&dates, &LocalDates::newDay);
    dates.follow_the_calendar();
    EXPECT_EQ(new_day.count(), 0);
    now += 60.0;
    dates.follow_the_calendar();
    EXPECT_EQ(new_day.count(), 1);
    EXPECT_EQ(dates.from(), start_of_local_day({2025, 3, 23}));
    EXPECT_EQ(dates.to(), end_of_local_day({2025, 3, 30}));

    dates.findChildren<QDateEdit *>().front()->setDate({2025, 1, 1});
    now += 48 * 3600.0;
    dates.follow_the_calendar();
    EXPECT_EQ(dates.from(), start_of_local_day({2025, 1, 1}));
    EXPECT_EQ(dates.to(), end_of_local_day({2025, 4, 1}));
}

} // namespace
} // namespace tally::test
