#include "support/chain_tracker_fixture.h"

#include <QClipboard>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(ChainTracker, AFailedQueryLeavesItsPartAsItWas)
{
    const auto loot_fails = std::make_shared<bool>(false);
    setup_.figures = [loot_fails](const auto &db, const auto &question, const auto &is_outdated) {
        ui::ChainFigures figures = ui::chain_figures(db, question, is_outdated);
        if (*loot_fails)
            figures.loot.reset();
        return figures;
    };
    add_chain(midnight, 2);
    open();
    *loot_fails = true;
    press(u"To: Previous day (-1)"_s);
    EXPECT_EQ(card(u"chains"_s), "0");
    EXPECT_EQ(loot_text(1), "20");
    sql(u"DROP TABLE reports"_s);
    press(u"To: Next day (+1)"_s);
    EXPECT_EQ(card(u"chains"_s), "0");
    EXPECT_EQ(player(), "Ada");
    EXPECT_EQ(page_->current_filter().player, 77.0);
    EXPECT_THAT(pairs(), ElementsAre("(no hero pairs in filter)"));
}

TEST_F(ChainTracker, FiguresThatTakeLongComeLaterWithASignUntilThen)
{
    QSemaphore let_go;
    impatient_ = std::make_unique<queries::StoreQueries>(store_.db, 0ms);
    setup_.counting_sign_after = 0ms;
    setup_.figures = [&let_go](const auto &db, const auto &question, const auto &is_outdated) {
        let_go.acquire();
        return ui::chain_figures(db, question, is_outdated);
    };
    add_chain(midnight, 2);
    open();
    EXPECT_TRUE(page_->busy());
    EXPECT_EQ(card(u"chains"_s), "—");
    EXPECT_TRUE(wait_until([this] { return summary_title() == "Summary (counting…)"; }));
    let_go.release();
    ASSERT_TRUE(wait_until([this] { return !page_->busy(); }));
    EXPECT_EQ(summary_title(), "Summary");
    EXPECT_EQ(card(u"chains"_s), "1");
    EXPECT_EQ(player(), "Ada");

    press(u"To: Next day (+1)"_s); // outdated before it is answered
    press(u"From: Next day (+1)"_s);
    EXPECT_EQ(card(u"chains"_s), "1");
    let_go.release(2);
    ASSERT_TRUE(wait_until([this] { return !page_->busy(); }));
    EXPECT_EQ(card(u"chains"_s), "0");
    let_go.release();
}

TEST_F(ChainTracker, APageThatNobodySeesReadsItsFiguresWhenItIsSeen)
{
    int asked = 0;
    setup_.figures = [&asked](const auto &db, const auto &question, const auto &is_outdated) {
        ++asked;
        return ui::chain_figures(db, question, is_outdated);
    };
    add_chain(midnight, 2);
    build();
    page_->refresh();
    ASSERT_TRUE(wait_until([this] { return player() == "Ada"; }));
    EXPECT_EQ(page_->current_filter().player, 77.0) << "others ask for the filter all the same";
    EXPECT_EQ(asked, 0);
    page_->show();
    EXPECT_EQ(card(u"chains"_s), "1");
    page_->hide();
    add_chain(midnight, 1);
    page_->refresh();
    page_->refresh();
    EXPECT_EQ(card(u"chains"_s), "1");
    page_->show();
    EXPECT_EQ(card(u"chains"_s), "2");
    EXPECT_EQ(asked, 2);
}

TEST_F(ChainTracker, ARefreshLeavesTheUserWhereHeIs)
{
    for (int hero = 1; hero <= 40; ++hero)
        add_chain(midnight, 1, 0, u"Ada"_s, 77.0, hero);
    open();
    auto &list = named<QListWidget>(u"Hero pairs"_s);
    auto &table = named<QTableView>(u"Loot"_s);
    list.setCurrentRow(20);
    table.selectRow(0);
    list.verticalScrollBar()->setValue(3);
    const std::string chosen = list.currentItem()->text().toStdString();
    add_chain(midnight, 1, 0, u"Ada"_s, 77.0, 40.0);
    page_->refresh();
    EXPECT_EQ(pairs().front(), "H40 + H8\n2 chains");
    EXPECT_EQ(list.currentItem()->text().toStdString(), chosen);
    EXPECT_EQ(list.verticalScrollBar()->value(), 3);
    EXPECT_EQ(table.selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(table.currentIndex().row(), 0);
}

TEST_F(ChainTracker, AClickOrEnterOnAPairOpensItsRounds)
{
    add_chain(midnight, 2);
    open();
    auto &list = named<QListWidget>(u"Hero pairs"_s);
    list.setFocus();
    list.setCurrentRow(0);
    for (const auto &open_pair : std::initializer_list<std::function<void()>>{
             [&] {
                 QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                                   list.visualItemRect(list.item(0)).center());
             },
             [&] { QTest::keyClick(&list, Qt::Key_Return); },
             [&] {
                 QTest::keyClick(&list, Qt::Key_Enter, Qt::KeypadModifier);
             }}) {
        open_pair();
        auto *window = page_->findChild<ui::RoundOverviewWindow *>();
        ASSERT_TRUE(window);
        EXPECT_EQ(window->windowTitle(), u"Round Overview — H7 + H8"_s);
        delete window;
    }
}

TEST_F(ChainTracker, APairWithoutChainsOrWithoutAStoreSaysSo)
{
    add_chain(midnight, 2);
    open();
    auto &list = named<QListWidget>(u"Hero pairs"_s);
    list.setFocus();
    list.setCurrentRow(0);
    sql(u"DELETE FROM reports"_s);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(close_box(), "No data: No chains found for this hero pair in the current filter.");
    sql(u"DROP TABLE reports"_s);
    page_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(page_.get()));
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_THAT(close_box(), HasSubstr("Error: Failed to load chains: TallyDb fatal: "));
    page_->refresh(); // now the list says that it is empty
}

TEST_F(ChainTracker, TheGreyItemOpensNothing)
{
    open();
    auto &list = named<QListWidget>(u"Hero pairs"_s);
    list.setFocus();
    list.setCurrentRow(0);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_FALSE(page_->findChild<ui::RoundOverviewWindow *>());
}

TEST_F(ChainTracker, TheKeyboardReachesAllControlsInReadingOrder)
{
    add_chain(midnight, 2);
    open();
    named<QPushButton>(u"From: Previous day (-1)"_s).setFocus();
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
    page_->refresh();
    master.clear();
    EXPECT_EQ(loot_text(0), "Gem");
    EXPECT_EQ(loot_text(2), "40");
}

TEST_F(ChainTracker, ItNeedsNoSidewaysScrollingOnALaptop)
{
    add_chain(midnight, 2);
    open();
    const auto sideways = [this](int width) {
        page_->resize(width, 640);
        QCoreApplication::processEvents();
        int bars = 0;
        for (const auto *area : page_->findChildren<QAbstractScrollArea *>())
            bars += area->isVisible() && area->horizontalScrollBar()->isVisible() ? 1 : 0;
        return bars;
    };
    EXPECT_EQ(sideways(1'350), 0);
    EXPECT_LE(sideways(1'000), 1) << "one bar in another";
}

TEST_F(ChainTracker, PairsAreCopiedAsATable)
{
    open();
    auto &list = named<QListWidget>(u"Hero pairs"_s);
    const auto copied = [&list] {
        list.selectAll();
        list.setCurrentRow(0);
        list.actions().constFirst()->trigger();
        return QGuiApplication::clipboard()->text().toStdString();
    };
    EXPECT_EQ(copied(), "Hero 1\tHero 2\tChains\n") << "what says that there is none is no row";
    add_chain(midnight, 2);
    page_->refresh();
    EXPECT_EQ(copied(), "Hero 1\tHero 2\tChains\nH7\tH8\t1\n");
}
