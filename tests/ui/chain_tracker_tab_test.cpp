#include "chains/chain_summary_box.h"
#include "chains/chain_tracker_tab.h"
#include "chains/round_overview_window.h"
#include "master/master_cache.h"
#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/window_fixture.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSemaphore>
#include <QTableView>
#include <QTimeEdit>
#include <QTimer>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr double midnight = 1'700'006'400.0; // 2023-11-15 00:00 UTC
constexpr double hour = 3'600.0;

/// The tab over a store of its own, on a day that stands still.
class ChainTracker : public testing::Test {
protected:
    ChainTracker()
    {
        setup_.icon_dir = store_.folder.filePath(u"icons"_s);
        setup_.clock = [] {
            return midnight + 22.0 * hour;
        };
        setup_.patience = 1h;
    }

    /// A chain of one minute with won and lost rounds; its file's name tells its number.
    void add_chain(double start, int won, int lost = 0, const QString &player = u"Ada"_s,
                   double player_id = 77.0, double hero_1 = 7.0)
    {
        std::vector<data::BattleRound> rounds;
        for (int i = 0; i < won; ++i)
            rounds.push_back(battle_round(1.0, {item(4.0, 1.0, 10.0)}));
        for (int i = 0; i < lost; ++i)
            rounds.push_back(battle_round(1.0));
        data::BattleReport report = battle(start, rounds);
        report.chain_end_time = start + 60.0;
        report.hero_id_1 = hero_1;
        report.hero_id_2 = 8.0;
        report.player_id = player_id;
        report.player_name = player;
        store_.db.insert_report(u"Persistent.Mail.%1"_s.arg(++chains_), report, start);
    }

    void build()
    {
        tab_ = std::make_unique<ui::ChainTrackerTab>(&store_.db, 1.0, nullptr, setup_);
        tab_->resize(1'400, 900);
    }

    ui::ChainTrackerTab &open()
    {
        build();
        tab_->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(tab_.get()));
        return *tab_;
    }

    void break_store(const QString &sql) { PlainConnection(store_.path).rows(sql); }

    template <typename Widget>
    Widget *named(const QString &accessible_name) const
    {
        for (Widget *widget : tab_->findChildren<Widget *>()) {
            if (widget->accessibleName() == accessible_name)
                return widget;
        }
        throw std::runtime_error("no control is called " + accessible_name.toStdString());
    }

    void press(const QString &button) const
    {
        QTest::mouseClick(named<QPushButton>(button), Qt::LeftButton);
    }

    std::string card(const QString &key) const
    {
        const auto *card = tab_->findChild<QWidget *>(key);
        return card->findChildren<QLabel *>().constFirst()->text().toStdString();
    }

    std::string best(const QString &name) const
    {
        return tab_->findChild<QLabel *>(name)->text().toStdString();
    }

    std::string period() const
    {
        QStringList parts;
        for (const QString &moment : {u"From"_s, u"To"_s})
            parts << named<QDateEdit>(moment + u" date (UTC)"_s)->text()
                  << named<QTimeEdit>(moment + u" time (UTC)"_s)->text();
        return parts.join(u' ').toStdString();
    }

    std::vector<std::string> pairs() const
    {
        const auto *list = named<QListWidget>(u"Hero pairs"_s);
        std::vector<std::string> texts;
        for (int row = 0; row < list->count(); ++row)
            texts.push_back(list->item(row)->text().toStdString());
        return texts;
    }

    QAbstractItemModel &loot() const { return *named<QTableView>(u"Loot"_s)->model(); }
    std::string loot_text(int column) const
    {
        return loot().index(0, column).data().toString().trimmed().toStdString();
    }

    std::string summary_title() const
    {
        return tab_->findChild<ui::ChainSummaryBox *>()->title().toStdString();
    }

    QComboBox &player_combo() const { return *named<QComboBox>(u"Player"_s); }
    std::string player() const { return player_combo().currentText().toStdString(); }

    /// Closes the window that comes up. \return what it says
    static std::shared_ptr<std::string> close_what_comes()
    {
        auto text = std::make_shared<std::string>("nothing came");
        QTimer::singleShot(0, qApp, [text] {
            QWidget *window = QApplication::activeModalWidget();
            if (!window)
                return;
            *text = window->windowTitle().toStdString();
            if (auto *box = qobject_cast<QMessageBox *>(window))
                *text += ": " + box->text().toStdString();
            window->close();
        });
        return text;
    }

    TempStore store_;
    ui::ChainTrackerSetup setup_;
    std::unique_ptr<ui::ChainTrackerTab> tab_;

private:
    int chains_ = 0;
};

} // namespace

TEST_F(ChainTracker, AnEmptyStoreShowsThatThereIsNothing)
{
    open();
    EXPECT_EQ(card(u"chains"_s), "0");
    EXPECT_EQ(card(u"wins"_s), "—");
    EXPECT_EQ(best(u"Best chain in the filter"_s), "Filter best chain: no data");
    EXPECT_EQ(best(u"Best chain of all"_s), "Overall best chain: no data");
    EXPECT_THAT(pairs(), ElementsAre("(no hero pairs in filter)"));
    EXPECT_EQ(player(), "All players");
    const QListWidgetItem *nothing = named<QListWidget>(u"Hero pairs"_s)->item(0);
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
    EXPECT_EQ(tab_->current_filter(), (ui::ChainFilter{1.0, midnight, midnight + 86'400.0, 77.0}));
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

TEST_F(ChainTracker, TheLastMinuteBelongsToTheDay)
{
    add_chain(midnight + 24.0 * hour - 0.5, 1);
    add_chain(midnight + 24.0 * hour, 5);
    open();
    EXPECT_EQ(card(u"wins"_s), "1\n(100.0%)");
}

TEST_F(ChainTracker, ANewDateStartsOrEndsItsDay)
{
    open();
    named<QTimeEdit>(u"From time (UTC)"_s)->setTime({12, 30});
    named<QTimeEdit>(u"To time (UTC)"_s)->setTime({13, 30});
    EXPECT_EQ(period(), "2023-11-15 12:30 2023-11-15 13:30");
    named<QDateEdit>(u"From date (UTC)"_s)->setDate({2023, 11, 1});
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

TEST_F(ChainTracker, ATimeIsLookedAtOnRefresh)
{
    add_chain(midnight + hour, 1);
    open();
    named<QTimeEdit>(u"From time (UTC)"_s)->setTime({2, 0});
    EXPECT_EQ(card(u"chains"_s), "1");
    press(u"Refresh"_s);
    EXPECT_EQ(card(u"chains"_s), "0");
}

TEST_F(ChainTracker, ClearingShowsAllOfTodayButKeepsTheSourceOfPoints)
{
    add_chain(midnight, 1);
    add_chain(midnight, 1, 0, u"Bob"_s, 78.0);
    open();
    named<QComboBox>(u"AP source"_s)->setCurrentIndex(1);
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
    tab_->refresh();
    EXPECT_EQ(player(), "Bob (79)");
    EXPECT_EQ(player_combo().itemText(1), u"Eve"_s);
    EXPECT_EQ(card(u"wins"_s), "4\n(100.0%)");
    break_store(u"DELETE FROM reports WHERE player_id = 79"_s);
    tab_->refresh();
    EXPECT_EQ(player(), "Eve");
}

TEST_F(ChainTracker, TheSourceOfPointsActsOnRoundsButNotOnTimes)
{
    add_chain(midnight, 2);
    open();
    named<QComboBox>(u"AP source"_s)->setCurrentIndex(2);
    EXPECT_EQ(card(u"rounds"_s), "0");
    EXPECT_EQ(loot().rowCount(), 0);
    EXPECT_EQ(card(u"active"_s), "1m 00s");
    EXPECT_EQ(card(u"avg_chain"_s), "1m 00s");
}

TEST_F(ChainTracker, AFailedQueryLeavesItsPartAsItWas)
{
    add_chain(midnight, 2);
    open();
    break_store(u"DROP TABLE chain_slice_loot"_s);
    press(u"To: Previous day (-1)"_s);
    EXPECT_EQ(card(u"chains"_s), "0");
    EXPECT_EQ(loot_text(1), "20");
    break_store(u"DROP TABLE chain_slices"_s);
    press(u"To: Next day (+1)"_s);
    EXPECT_EQ(card(u"chains"_s), "0");
    EXPECT_EQ(player(), "Ada");
    EXPECT_EQ(tab_->current_filter().player, 77.0);
    EXPECT_THAT(pairs(), ElementsAre("(no hero pairs in filter)"));
}

TEST_F(ChainTracker, FiguresThatTakeLongComeLaterWithASignUntilThen)
{
    QSemaphore let_go;
    setup_.patience = 0ms;
    setup_.counting_sign_after = 0ms;
    setup_.figures = [&let_go](const auto &db, const auto &question, const auto &is_outdated) {
        let_go.acquire();
        return ui::chain_figures(db, question, is_outdated);
    };
    add_chain(midnight, 2);
    open();
    EXPECT_TRUE(tab_->busy());
    EXPECT_EQ(card(u"chains"_s), "—");
    EXPECT_TRUE(wait_until([this] { return summary_title() == "Summary (counting…)"; }));
    let_go.release();
    ASSERT_TRUE(wait_until([this] { return !tab_->busy(); }));
    EXPECT_EQ(summary_title(), "Summary");
    EXPECT_EQ(card(u"chains"_s), "1");
    EXPECT_EQ(player(), "Ada");

    press(u"To: Next day (+1)"_s); // outdated before it is answered
    press(u"From: Next day (+1)"_s);
    EXPECT_EQ(card(u"chains"_s), "1");
    let_go.release(2);
    ASSERT_TRUE(wait_until([this] { return !tab_->busy(); }));
    EXPECT_EQ(card(u"chains"_s), "0");
    let_go.release();
}

TEST_F(ChainTracker, ARefreshLeavesTheUserWhereHeIs)
{
    for (int hero = 1; hero <= 40; ++hero)
        add_chain(midnight, 1, 0, u"Ada"_s, 77.0, hero);
    open();
    auto *list = named<QListWidget>(u"Hero pairs"_s);
    auto *table = named<QTableView>(u"Loot"_s);
    list->setCurrentRow(20);
    table->selectRow(0);
    list->verticalScrollBar()->setValue(3);
    const std::string chosen = list->currentItem()->text().toStdString();
    add_chain(midnight, 1, 0, u"Ada"_s, 77.0, 40.0);
    tab_->refresh();
    EXPECT_EQ(pairs().front(), "H40 + H8\n2 chains");
    EXPECT_EQ(list->currentItem()->text().toStdString(), chosen);
    EXPECT_EQ(list->verticalScrollBar()->value(), 3);
    EXPECT_EQ(table->selectionModel()->selectedRows().size(), 1);
}

TEST_F(ChainTracker, AClickOrEnterOnAPairOpensItsRounds)
{
    add_chain(midnight, 2);
    open();
    auto *list = named<QListWidget>(u"Hero pairs"_s);
    list->setFocus();
    list->setCurrentRow(0);
    for (const auto &open_pair : std::initializer_list<std::function<void()>>{
             [&] {
                 QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                                   list->visualItemRect(list->item(0)).center());
             },
             [&] { QTest::keyClick(list, Qt::Key_Return); },
             [&] {
                 QTest::keyClick(list, Qt::Key_Enter, Qt::KeypadModifier);
             }}) {
        open_pair();
        auto *window = tab_->findChild<ui::RoundOverviewWindow *>();
        ASSERT_TRUE(window);
        EXPECT_EQ(window->windowTitle(), u"Round Overview — H7 + H8"_s);
        delete window;
    }
}

TEST_F(ChainTracker, APairWithoutChainsOrWithoutAStoreSaysSo)
{
    add_chain(midnight, 2);
    open();
    auto *list = named<QListWidget>(u"Hero pairs"_s);
    list->setFocus();
    list->setCurrentRow(0);
    break_store(u"DELETE FROM reports"_s);
    auto said = close_what_comes();
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(*said, "No data: No chains found for this hero pair in the current filter.");
    break_store(u"DROP TABLE reports"_s);
    tab_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(tab_.get()));
    list->setFocus();
    said = close_what_comes();
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_THAT(*said, HasSubstr("Error: Failed to load chains: TallyDb fatal: "));
    tab_->refresh(); // now the list says that it is empty
}

TEST_F(ChainTracker, TheGreyItemOpensNothing)
{
    open();
    auto *list = named<QListWidget>(u"Hero pairs"_s);
    list->setFocus();
    list->setCurrentRow(0);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_FALSE(tab_->findChild<ui::RoundOverviewWindow *>());
}

TEST_F(ChainTracker, TheKeyboardReachesAllControlsInReadingOrder)
{
    add_chain(midnight, 2);
    open();
    named<QPushButton>(u"From: Previous day (-1)"_s)->setFocus();
    std::vector<std::string> reached;
    for (int i = 0; i < 20; ++i) { // a date has three parts, a time two
        reached.push_back(QApplication::focusWidget()->accessibleName().toStdString());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    reached.erase(std::unique(reached.begin(), reached.end()), reached.end());
    EXPECT_THAT(reached,
                ElementsAre("From: Previous day (-1)", "From date (UTC)", "From: Next day (+1)",
                            "From time (UTC)", "To: Previous day (-1)", "To date (UTC)",
                            "To: Next day (+1)", "To time (UTC)", "Player", "AP source", "Refresh",
                            "Clear filter", "Hero pairs", "Loot"));
}

TEST_F(ChainTracker, ANamelessItemGetsItsNameWithTheNextRefresh)
{
    data::MasterCache &master = data::MasterCache::instance();
    add_chain(midnight, 2);
    open();
    EXPECT_EQ(loot_text(0), "Type=4/Sub=1");
    master.load_json(u"items"_s, R"({"items": {"4.0_1.0": {"name": "Gem", "unit_value": 2}}})");
    tab_->refresh();
    master.clear();
    EXPECT_EQ(loot_text(0), "Gem");
    EXPECT_EQ(loot_text(2), "40");
}
