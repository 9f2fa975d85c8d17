#include "support/report_page_fixture.h"
#include "ui/forts/fort_rally_tab.h"

#include <QComboBox>

namespace tally::test {
namespace {

using testing::ElementsAre;

class FortRally : public ReportPage<ui::FortRallyTab> {
protected:
    void add_fort(const QString &file, double time, int level, double pieces)
    {
        data::FortReport report = fort(time, {item(4.0, 2.0, pieces)});
        report.fort_level = level;
        report.damage_percent = 92;
        store_.db.insert_fort_report(file, report, time);
    }
    void open_page()
    {
        open(std::make_unique<ui::FortRallyTab>(&queries_, QString(), nullptr,
                                                [this] { return now_; }));
    }
    std::vector<std::string> levels() const { return column(table(u"Fort reports"_s), 1); }
};

TEST_F(FortRally, ListsTheFortsOfTheFilterTheNewestFirst)
{
    add_fort(u"f1"_s, noon - 2 * hour, 3, 5.0);
    add_fort(u"f2"_s, noon - hour, 5, 7.0);
    add_fort(u"late"_s, noon + 11 * hour, 9, 1.0); // midnight in Berlin
    open_page();
    EXPECT_THAT(levels(), ElementsAre("Lv 5", "Lv 3"));
    EXPECT_TRUE(says(u"Reports (2) — double-click a row for battle details:"_s));
    const auto &loot = named<QTableView>(u"Loot"_s);
    EXPECT_THAT(column(loot, 1), ElementsAre("12"));
    EXPECT_THAT(column(loot, 4), ElementsAre("100.0%"));
    auto &level = named<QComboBox>(u"Min level"_s);
    level.setCurrentText(u"≥ 5"_s);
    EXPECT_EQ(levels().size(), 2u); // not before a refresh
    press(u"Refresh"_s);
    EXPECT_THAT(levels(), ElementsAre("Lv 5"));
    EXPECT_THAT(column(loot, 1), ElementsAre("7"));
}

TEST_F(FortRally, ShowsTheBattleBesideTheReport)
{
    data::BattleRound won = battle_round(5'000.0, {item(4.0, 1.0, 10.0)});
    won.damage_taken = 70.0;
    data::BattleReport chain = battle(noon - hour, {battle_round({}), won});
    chain.hero_id_1 = 7.0;
    chain.player_name = u"A & B"_s;
    store_.db.insert_report(u"Persistent.Mail.111"_s, chain, noon);
    add_fort(u"f1"_s, noon - hour, 7, 5.0);
    add_fort(u"alone"_s, noon - 4 * hour, 2, 5.0);
    store_.db.link_fort_to_chains();
    open_page();

    double_click(table(u"Fort reports"_s), 0);
    auto &rounds = *dialog().findChild<ui::ItemRowTable *>();
    EXPECT_THAT(column(rounds, 1), ElementsAre("Barb Lv 45", "🏰 FORT (Lv 45)"));
    EXPECT_THAT(column(rounds, 2), ElementsAre("—", "5000"));
    EXPECT_THAT(column(rounds, 3), ElementsAre("—", "70"));
    close_dialog();

    ui::ItemRowTable &reports = table(u"Fort reports"_s);
    reports.select_key(u"alone"_s);
    QTest::keyClick(&reports, Qt::Key_Return);
    EXPECT_EQ(dialog().findChild<ui::ItemRowTable *>()->model()->rowCount(), 0);
    EXPECT_TRUE(dialog_texts().join(u'\n').contains(u"No paired battle report found"));
    close_dialog();
}

} // namespace
} // namespace tally::test
