#include "support/chain_tracker_fixture.h"
#include "ui/parts/page_note.h"

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(ChainTracker, AnEmptyStoreShowsThatThereIsNothing)
{
    open();
    EXPECT_EQ(card(u"chains"_s), "0");
    EXPECT_EQ(card(u"wins"_s), "—");
    EXPECT_EQ(best(u"Best chain in the filter"_s), "Filter best chain: no data");
    EXPECT_EQ(best(u"Best chain of all"_s), "Overall best chain: no data");
    EXPECT_THAT(pairs(), ElementsAre("(no hero pairs in filter)"));
    EXPECT_EQ(player(), "All players");
    const QListWidgetItem *nothing = named<QListWidget>(u"Hero pairs"_s).item(0);
    EXPECT_EQ(nothing->foreground().color(), QColor(Qt::gray));
}

TEST_F(ChainTracker, ItStartsWithTheDayOfTheFirstAccount)
{
    add_chain(midnight - 1.0, 9);
    add_chain(midnight, 2, 1);
    add_chain(midnight + hour, 1);
    add_chain(midnight + hour, 4, 0, u"Bob"_s, 78.0);
    open();
    EXPECT_EQ(period(), "2023-11-15 00:00 2023-11-15 23:59");
    EXPECT_EQ(player(), "Ada");
    EXPECT_EQ(page_->current_filter(), (ui::ChainFilter{1.0, midnight, midnight + 86'400.0, 77.0}));
    EXPECT_EQ(card(u"chains"_s), "2");
    EXPECT_EQ(card(u"wins"_s), "3\n(75.0%)");
    EXPECT_EQ(card(u"active"_s), "2m 00s");
    EXPECT_EQ(best(u"Best chain in the filter"_s),
              "Filter best chain: 2 rounds in 1m 00s (2023-11-15 00:00 UTC)");
    EXPECT_EQ(best(u"Best chain of all"_s),
              "Overall best chain: 9 rounds in 1m 00s (2023-11-14 23:59 UTC)");
    EXPECT_THAT(pairs(), ElementsAre("H7 + H8\n2 chains"));
    EXPECT_EQ(loot_text(1), "30");
    EXPECT_EQ(loot_text(4), "100.0%"); // of the kills
}

TEST_F(ChainTracker, ANewDateStartsOrEndsItsDay)
{
    open();
    named<QTimeEdit>(u"From time (UTC)"_s).setTime({12, 30});
    named<QTimeEdit>(u"To time (UTC)"_s).setTime({13, 30});
    EXPECT_EQ(period(), "2023-11-15 12:30 2023-11-15 13:30");
    named<QDateEdit>(u"From date (UTC)"_s).setDate({2023, 11, 1});
    EXPECT_EQ(period(), "2023-11-01 00:00 2023-11-15 13:30");
    press(u"To: Next day (+1)"_s);
    EXPECT_EQ(period(), "2023-11-01 00:00 2023-11-16 23:59");
}

TEST_F(ChainTracker, ADayButtonShowsTheFiguresOfItsDay)
{
    add_chain(midnight - 24.0 * hour, 3);
    open();
    EXPECT_EQ(card(u"chains"_s), "0");
    press(u"From: Previous day (-1)"_s);
    EXPECT_EQ(card(u"chains"_s), "1");
    press(u"From: Next day (+1)"_s);
    EXPECT_EQ(card(u"chains"_s), "0");
    press(u"From: Previous day (-1)"_s);
    press(u"To: Previous day (-1)"_s);
    EXPECT_EQ(period(), "2023-11-14 00:00 2023-11-14 23:59");
    EXPECT_EQ(card(u"chains"_s), "1");
}

TEST_F(ChainTracker, ATimeIsLookedAtOnRefreshWhichIsMarkedUntilThen)
{
    add_chain(midnight + hour, 1);
    open();
    const auto is_marked = [this] {
        return named<QPushButton>(u"Refresh"_s).property("pending").toBool();
    };
    EXPECT_FALSE(is_marked());
    named<QTimeEdit>(u"From time (UTC)"_s).setTime({2, 0});
    EXPECT_TRUE(is_marked());
    named<QTimeEdit>(u"From time (UTC)"_s).setTime({0, 0});
    EXPECT_FALSE(is_marked());
    named<QTimeEdit>(u"From time (UTC)"_s).setTime({2, 0});
    EXPECT_EQ(card(u"chains"_s), "1");
    press(u"Refresh"_s);
    EXPECT_EQ(card(u"chains"_s), "0");
    EXPECT_FALSE(is_marked());
}

TEST_F(ChainTracker, WhoeverLooksAtTodayIsTakenOverMidnight)
{
    auto now = std::make_shared<double>(midnight + 23.9 * hour);
    clock_ = [now] {
        return *now;
    };
    setup_.day_watch_interval = 1ms;
    add_chain(midnight + 25.0 * hour, 1);
    open();
    EXPECT_EQ(card(u"chains"_s), "0");
    *now += hour;
    const auto stands_on = [this](const char *expected) {
        return wait_until([&] { return period() == expected; });
    };
    EXPECT_TRUE(stands_on("2023-11-16 00:00 2023-11-16 23:59"));
    EXPECT_EQ(card(u"chains"_s), "1");
    press(u"From: Previous day (-1)"_s);
    *now += 24.0 * hour; // who looks at other days stays there
    EXPECT_TRUE(wait_until([this] {
        press(u"Clear filter"_s);
        return period() == "2023-11-17 00:00 2023-11-17 23:59";
    }));
}

TEST_F(ChainTracker, AnEmptyPageSaysWhyAndOffersTheStep)
{
    const auto notes = [this] {
        std::vector<std::string> texts;
        for (const auto *note : page_->findChildren<ui::PageNote *>()) {
            if (note->isVisible())
                texts.push_back(note->accessibleName().toStdString());
        }
        return texts;
    };
    open();
    EXPECT_THAT(notes(), ElementsAre("No mail folder yet."));
    QSignalSpy folder_wanted(page_.get(), &ui::ReportTab::mailFolderWanted);
    press(u"Choose…"_s);
    EXPECT_EQ(folder_wanted.size(), 1);
    store_.db.set_setting(u"mailcache_dir"_s, store_.folder.path());
    page_->refresh();
    EXPECT_THAT(notes(), ElementsAre("No chains yet. They come in with their mails."));
    add_chain(midnight - 50.0 * hour, 1);
    add_chain(midnight - 30.0 * hour, 1);
    page_->refresh();
    EXPECT_THAT(notes(), ElementsAre("Nothing in this period; the last chain was on 2023-11-13."));
    press(u"Show that day"_s);
    EXPECT_EQ(period(), "2023-11-13 00:00 2023-11-13 23:59");
    EXPECT_EQ(card(u"chains"_s), "1");
    EXPECT_THAT(notes(), ElementsAre());
}

TEST_F(ChainTracker, ClearingShowsAllOfTodayButKeepsTheSourceOfPoints)
{
    add_chain(midnight, 1);
    add_chain(midnight, 1, 0, u"Bob"_s, 78.0);
    open();
    named<QComboBox>(u"AP source"_s).setCurrentIndex(1);
    press(u"From: Previous day (-1)"_s);
    press(u"Clear filter"_s);
    EXPECT_EQ(period(), "2023-11-15 00:00 2023-11-15 23:59");
    EXPECT_EQ(player(), "All players");
    EXPECT_EQ(card(u"chains"_s), "2");
    EXPECT_EQ(store_.db.free_ap_mode, 1);
}

TEST_F(ChainTracker, TheChosenPlayerStaysOverARefresh)
{
    for (int i = 0; i < 2; ++i)
        add_chain(midnight, 1, 0, u"Bob"_s, 78.0);
    add_chain(midnight, 4, 0, u"Bob"_s, 79.0);
    open();
    player_combo().setCurrentText(u"Bob (79)"_s);
    EXPECT_EQ(card(u"wins"_s), "4\n(100.0%)");
    for (int i = 0; i < 3; ++i)
        add_chain(midnight, 8, 0, u"Eve"_s, 80.0); // the account of most chains comes first
    page_->refresh();
    EXPECT_EQ(player(), "Bob (79)");
    EXPECT_EQ(player_combo().itemText(1), u"Eve"_s);
    EXPECT_EQ(card(u"wins"_s), "4\n(100.0%)");
    sql(u"DELETE FROM reports WHERE player_id = 79"_s);
    page_->refresh();
    EXPECT_EQ(player(), "Eve");
}

TEST_F(ChainTracker, TheSourceOfPointsActsOnRoundsButNotOnTimes)
{
    add_chain(midnight, 2);
    open();
    named<QComboBox>(u"AP source"_s).setCurrentIndex(2);
    EXPECT_EQ(card(u"rounds"_s), "0");
    EXPECT_EQ(loot().rowCount(), 0);
    EXPECT_EQ(card(u"active"_s), "1m 00s");
    EXPECT_EQ(card(u"avg_chain"_s), "1m 00s");
}
