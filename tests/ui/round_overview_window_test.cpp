#include "support/print_qt.h"
#include "support/report_builders.h"
#include "support/round_builders.h"
#include "support/temp_store.h"
#include "ui/chains/chain_group_widget.h"
#include "ui/chains/chain_list.h"
#include "ui/chains/round_overview_window.h"
#include "ui/chains/round_row_widget.h"
#include "ui/parts/theme.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <set>

using namespace tally;
using namespace tally::ui;
using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Lt;

namespace {

/// An open overview; gone with the test.
class Overview {
public:
    explicit Overview(std::vector<data::ChainRun> chains,
                      std::vector<std::optional<data::FortOfChain>> forts = {},
                      QWidget *parent = nullptr, const QString &hero = u"Ada"_s)
        : Overview(std::make_unique<RoundOverviewWindow>(1, 2, hero, u"Bea"_s, std::move(chains),
                                                         std::move(forts), QString(), parent))
    {}
    explicit Overview(std::unique_ptr<RoundOverviewWindow> opened)
        : window(opened.release()), area(window->findChild<QAbstractScrollArea *>())
    {
        window->show();
        QCoreApplication::processEvents();
    }
    ~Overview() { delete window; }
    Q_DISABLE_COPY_MOVE(Overview)

    void scroll_to(int y)
    {
        area->verticalScrollBar()->setValue(y);
        QCoreApplication::processEvents();
    }

    /// What is shown of a kind, from top to bottom.
    template <typename Widget>
    std::vector<Widget *> shown() const
    {
        std::vector<Widget *> widgets;
        for (Widget *widget : area->findChildren<Widget *>()) {
            if (widget->isVisible())
                widgets.push_back(widget);
        }
        std::ranges::sort(widgets, {}, [](const Widget *widget) { return widget->y(); });
        return widgets;
    }

    QPointer<RoundOverviewWindow> window;
    QAbstractScrollArea *area;
};

QStringList texts_of(const QWidget &widget)
{
    QStringList texts;
    for (const QLabel *label : widget.findChildren<QLabel *>()) {
        if (label->pixmap().isNull())
            texts.push_back(label->text());
    }
    return texts;
}

QStringList tool_tips_of(const QWidget &row)
{
    QStringList tips;
    for (const QLabel *label : row.findChildren<QLabel *>()) {
        if (label->isVisible() && !label->toolTip().isEmpty())
            tips.push_back(label->toolTip());
    }
    return tips;
}

/// Chains of `length` rounds, newest first, of which every third brought loot.
std::vector<data::ChainRun> many_chains(int count, int length)
{
    std::vector<data::ChainRun> chains;
    for (int i = count; i > 0; --i) {
        std::vector<data::ChainRound> rounds;
        for (int no = 0; no < length; ++no)
            rounds.push_back((i + no) % 3 == 0 ? won_round() : lost_round());
        chains.push_back(chain_of(QString::number(i), 1000.0 * i, std::move(rounds)));
    }
    return chains;
}

class RoundOverviewWindowTest : public testing::Test {
protected:
    RoundOverviewWindowTest() { apply_to_app(qApp, 0); }
    ~RoundOverviewWindowTest() override { qApp->setStyleSheet(QString()); }

    ReferenceTables tables;
};

} // namespace

TEST_F(RoundOverviewWindowTest, ItsHeightFollowsTheParentAndItStandsInItsMiddle)
{
    for (const auto &[parent_height, height] : {std::pair(500, 600), {1000, 850}, {2000, 900}}) {
        QWidget parent;
        parent.setGeometry(300, 200, 1400, parent_height);
        RoundOverviewWindow window(1, 2, {}, {}, {}, {}, {}, &parent);
        EXPECT_EQ(window.size(), QSize(1080, height));
        EXPECT_EQ(window.frameGeometry().center(), parent.frameGeometry().center());
        EXPECT_EQ(window.windowModality(), Qt::ApplicationModal);
    }
    EXPECT_EQ(Overview(many_chains(0, 0)).window->size(), QSize(1080, 800));
}

TEST_F(RoundOverviewWindowTest, EscapeClosesAndDeletesIt)
{
    const Overview overview(many_chains(1, 1));
    QTest::keyClick(overview.window->focusWidget(), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(overview.window.isNull());
}

TEST_F(RoundOverviewWindowTest, ChainsStandNewestFirstAndRoundsLastFirst)
{
    const Overview overview({chain_of(u"b"_s, 2.0, {lost_round(), won_round()}),
                             chain_of(u"a"_s, 1.0, {lost_round()})});
    QStringList heads;
    for (const ChainGroupWidget *group : overview.shown<ChainGroupWidget>())
        heads += texts_of(*group).constFirst().section(u' ', 0, 1);
    EXPECT_THAT(heads, ElementsAre(u"Chain #2"_s, u"Chain #1"_s));
    QStringList numbers;
    for (const RoundRowWidget *row : overview.shown<RoundRowWidget>())
        numbers += texts_of(*row).constFirst();
    EXPECT_THAT(numbers, ElementsAre(u"2-2"_s, u"2-1"_s, u"1-1"_s));
}

TEST_F(RoundOverviewWindowTest, ARowShowsItsRoundInTheOrderOfTheColumns)
{
    data::ChainRound round = won_round();
    round.level = 25.0;
    round.damage_taken = 12.0;
    round.damage_dealt = 34.0;
    const Overview overview({chain_of(u"a"_s, 1.0, {round})});
    EXPECT_THAT(texts_of(*overview.shown<RoundRowWidget>().at(0)),
                ElementsAre(u"1-1"_s, u"Victory"_s, u"Lvl 25 Barb"_s, u""_s, u"12"_s, u"34"_s));
}

TEST_F(RoundOverviewWindowTest, EveryPlaceShowsItsOwnRoundsWhereverOneScrolls)
{
    constexpr int length = 7;
    Overview overview(many_chains(40, length));
    QScrollBar *bar = overview.area->verticalScrollBar();
    const int end = bar->maximum();
    for (const double share : {0.0, 0.5, 0.52, 1.0, 0.1, 0.9, 0.0}) {
        overview.scroll_to(static_cast<int>(share * end));
        const auto rows = overview.shown<RoundRowWidget>();
        ASSERT_GT(rows.size(), 5u);
        const QStringList first = texts_of(*rows.front()).constFirst().split(u'-');
        int place = (40 - first[0].toInt()) * length + length - first[1].toInt();
        for (const RoundRowWidget *row : rows) {
            const int chain = 40 - place / length;
            const int no = length - 1 - place % length;
            const QStringList texts = texts_of(*row);
            EXPECT_EQ(texts[0], u"%1-%2"_s.arg(chain).arg(no + 1));
            EXPECT_EQ(texts[1], (chain + no) % 3 == 0 ? u"Victory" : u"Escape");
            ++place;
        }
        EXPECT_EQ(bar->maximum(), end);
    }
}

TEST_F(RoundOverviewWindowTest, RowsFillTheViewWithoutGapsOrOverlaps)
{
    Overview overview(many_chains(40, 7));
    for (const int y : {0, 777, 5000}) {
        overview.scroll_to(y);
        int next_row = std::numeric_limits<int>::min();
        const auto rows = overview.shown<RoundRowWidget>();
        for (const ChainGroupWidget *group : overview.shown<ChainGroupWidget>()) {
            for (const RoundRowWidget *row : rows) {
                if (!group->geometry().contains(row->geometry()))
                    continue;
                EXPECT_TRUE(row->y() == next_row || next_row < group->y());
                next_row = row->geometry().bottom() + 1 + ChainGroupWidget::spacing;
            }
        }
        EXPECT_LE(rows.front()->y(), 60);
        EXPECT_GE(rows.back()->geometry().bottom(), overview.area->viewport()->height() - 60);
    }
}

TEST_F(RoundOverviewWindowTest, ScrollingToTheEndShowsTheFirstRoundWithFewWidgets)
{
    Overview overview(many_chains(300, 10));
    for (int y = 0; y <= overview.area->verticalScrollBar()->maximum(); y += 5000)
        overview.scroll_to(y);
    QTest::keyClick(overview.area, Qt::Key_End);
    QCoreApplication::processEvents();
    const auto rows = overview.shown<RoundRowWidget>();
    EXPECT_EQ(texts_of(*rows.back()).constFirst(), u"1-1");
    EXPECT_LE(rows.back()->mapTo(overview.area, rows.back()->rect().bottomLeft()).y(),
              overview.area->height());
    EXPECT_THAT(overview.area->findChildren<RoundRowWidget *>().size(), Lt(60));
}

TEST_F(RoundOverviewWindowTest, TheKeyboardScrolls)
{
    const Overview overview(many_chains(50, 10));
    QScrollBar *bar = overview.area->verticalScrollBar();
    const auto after = [&](Qt::Key key) {
        QTest::keyClick(overview.window->focusWidget(), key);
        return bar->value();
    };
    EXPECT_EQ(after(Qt::Key_End), bar->maximum());
    EXPECT_EQ(after(Qt::Key_PageUp), bar->maximum() - bar->pageStep());
    EXPECT_EQ(after(Qt::Key_Home), 0);
    EXPECT_EQ(after(Qt::Key_Down), bar->singleStep());
}

TEST_F(RoundOverviewWindowTest, ADestroyedFortShowsItsItemsByName)
{
    tables.set_item(1, 2, u"Gem"_s, u"gems"_s);
    tables.set_item(3, 4, u"Bag of <b>gold</b>"_s, u"gold"_s);
    data::FortOfChain fort;
    fort.loot = {loot_of_item(3.0, 4.0, 5.0), loot_of_item(1.0, 2.0, 7.0)};
    const Overview overview({chain_of(u"a"_s, 1.0, {fort_round(5.0)})}, {fort});
    EXPECT_THAT(tool_tips_of(*overview.shown<RoundRowWidget>().at(0)),
                ElementsAre(u"Gem\n7"_s, testing::Truly([](const QString &tip) {
                                return tip.contains(u"&lt;b&gt;");
                            })));
}

TEST_F(RoundOverviewWindowTest, ARowThatIsUsedAgainForgetsItsRewards)
{
    std::vector<data::ChainRound> rounds(60, lost_round());
    tables.set_item(1, 2, u"Gem"_s, u"gems"_s);
    std::ranges::fill(rounds.end() - 20, rounds.end(), won_round());
    Overview overview({chain_of(u"a"_s, 1.0, std::move(rounds))});
    EXPECT_THAT(tool_tips_of(*overview.shown<RoundRowWidget>().at(0)), ElementsAre(u"Gem\n3"_s));
    overview.scroll_to(overview.area->verticalScrollBar()->maximum());
    for (const RoundRowWidget *row : overview.shown<RoundRowWidget>())
        EXPECT_THAT(tool_tips_of(*row), ElementsAre());
}

TEST_F(RoundOverviewWindowTest, NamesAreShownAsTheyStandAndNeverWidenTheWindow)
{
    const QString name = u"<img src=x> %1 %2"_s + QString(3000, u'W');
    tables.set_barbs(100, 120, name, 0);
    data::ChainRound round;
    round.npc_type = 105.0;
    const Overview overview({chain_of(u"a"_s, 1.0, {round})}, {}, nullptr, name);
    EXPECT_EQ(overview.window->width(), 1080);
    EXPECT_EQ(texts_of(*overview.shown<RoundRowWidget>().at(0)).at(2), u"Lvl 105 "_s + name);
    EXPECT_TRUE(overview.window->windowTitle().contains(name));
    for (const QLabel *label : overview.window->findChildren<QLabel *>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().left(40).toStdString();
}

TEST_F(RoundOverviewWindowTest, RowsAreTintedByTheirKind)
{
    data::ChainRound on_the_way = lost_round();
    on_the_way.is_free_ap = true;
    const Overview overview({chain_of(u"a"_s, 1.0, {lost_round(), on_the_way, fort_round(1.0)})});
    const QImage picture = overview.window->grab().toImage();
    std::set<QRgb> colours;
    for (const RoundRowWidget *row : overview.shown<RoundRowWidget>()) {
        colours.insert(picture.pixel(row->mapTo(overview.window, QPoint(2, 2))));
        colours.insert(picture.pixel(row->mapTo(overview.window, QPoint(2, -2))));
    }
    EXPECT_EQ(colours.size(), 4u); // of three kinds of rows and of what is between them
}

TEST_F(RoundOverviewWindowTest, TheHeadersStandOnTheirColumnsAndFollowThem)
{
    const Overview overview(many_chains(1, 1));
    const auto labels = overview.window->findChildren<QLabel *>();
    const auto head = std::ranges::find_if(
        labels, [](const QLabel *label) { return label->text() == u"Target"; });
    ASSERT_NE(head, labels.end());
    const auto stand_together = [&] {
        const QLabel *target =
            overview.shown<RoundRowWidget>().at(0)->findChildren<QLabel *>().at(2);
        EXPECT_EQ((*head)->mapTo(overview.window, QPoint()).x(),
                  target->mapTo(overview.window, QPoint()).x());
    };
    stand_together();
    overview.window->resize(700, 600);
    QCoreApplication::processEvents();
    QScrollBar *bar = overview.area->horizontalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    bar->setValue(bar->maximum());
    QCoreApplication::processEvents();
    stand_together();
}

TEST_F(RoundOverviewWindowTest, ManyRewardsTakeMoreLinesAndNoSidewaysScrolling)
{
    data::ChainRound rich;
    rich.loot.assign(12, loot_of(1.0));
    const Overview overview({chain_of(u"a"_s, 1.0, {lost_round(), rich, won_round()})});
    EXPECT_EQ(overview.area->horizontalScrollBar()->maximum(), 0);
    const auto rows = overview.shown<RoundRowWidget>();
    EXPECT_GT(rows.at(1)->height(), rows.at(0)->height());
    EXPECT_GT(rows.at(0)->height(), rows.at(2)->height());
    for (const QLabel *tile : rows.at(1)->findChildren<QLabel *>())
        EXPECT_TRUE(
            rows.at(1)->rect().contains(QRect(tile->mapTo(rows.at(1), QPoint()), tile->size())));
}

TEST_F(RoundOverviewWindowTest, RoundsAreReadWhenTheyComeNearTheView)
{
    TempStore store;
    constexpr int chains = 400;
    for (int i = 0; i < chains; ++i) {
        data::BattleReport report = battle(
            1000.0 * (i + 1), {battle_round(1.0, {item(4.0, 1.0, 10.0)}), battle_round(1.0)});
        report.hero_id_1 = 7.0;
        report.hero_id_2 = 8.0;
        store.db.insert_report(QString::number(i), report, 1.0);
    }
    queries::StoreQueries queries(store.db, 1h);
    auto heads = store.db.chain_heads_for_pair(7, 8, store.db.question(1.0, {}, {}, {}));
    ASSERT_EQ(heads.size(), static_cast<size_t>(chains));
    Overview overview(std::make_unique<RoundOverviewWindow>(queries, u"Ada"_s, u"Bea"_s,
                                                            std::move(heads), QString()));
    const auto &list = dynamic_cast<const ChainList &>(*overview.area);
    const qint64 height = list.total_height();
    QScrollBar *bar = overview.area->verticalScrollBar();
    for (const double share : {0.0, 0.5, 1.0, 0.0}) {
        overview.scroll_to(static_cast<int>(share * bar->maximum()));
        const auto rows = overview.shown<RoundRowWidget>();
        ASSERT_GT(rows.size(), 5u);
        const QStringList first = texts_of(*rows.front()).constFirst().split(u'-');
        const QStringList last = texts_of(*rows.back()).constFirst().split(u'-');
        EXPECT_NEAR(first[0].toInt(), chains - share * chains, 20);
        EXPECT_EQ(texts_of(*rows.back()).at(1), last[1] == u"1"_s ? u"Victory"_s : u"Escape"_s);
    }
    EXPECT_EQ(list.total_height(), height) << "the heads told the heights";
    size_t known = 0;
    for (size_t chain = 0; chain < list.overview().chain_count(); ++chain)
        known += list.overview().knows_rounds(chain) ? 1 : 0;
    EXPECT_THAT(known, Lt(250u));
}
