#include "support/report_page_fixture.h"
#include "ui/trials/baulur_run_tab.h"
#include "ui/trials/loot_card.h"

#include <QCheckBox>
#include <QComboBox>

namespace tally::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BaulurRun : public ReportPage<ui::BaulurRunTab> {
protected:
    BaulurRun()
    {
        kill(u"a1"_s, noon - 30 * hour, {u"Ada"_s, u"Bob"_s});
        kill(u"a2"_s, noon - 29 * hour, {u"Ada"_s});
        kill(u"b1"_s, noon - 5 * hour, {u"Bob"_s}, u"Miser Khaolak"_s);
        kill(u"c1"_s, noon - 5 * hour + 60.0, {u"Eve"_s}, u"Somebody else"_s);
    }

    void open_page()
    {
        open(std::make_unique<ui::BaulurRunTab>(&queries_, QString(), nullptr,
                                                [this] { return now_; }));
    }

    std::vector<std::string> cards() const
    {
        std::vector<std::string> texts;
        for (const ui::LootCard *card : page_->findChildren<ui::LootCard *>())
            texts.push_back(card->accessibleName().toStdString());
        return texts;
    }
    void select_session(int row) const
    {
        ui::ItemRowTable &sessions = table(u"Sessions"_s);
        QTest::mouseClick(sessions.viewport(), Qt::LeftButton, {},
                          sessions.visualRect(sessions.model()->index(row, 0)).center());
    }
    std::vector<std::string> players() const { return column(table(u"Players"_s), 0); }
    QComboBox &player() const { return named<QComboBox>(u"Player"_s); }
};

TEST_F(BaulurRun, GathersKillsIntoSessionsAndShowsTheFirst)
{
    open_page();
    EXPECT_THAT(column(table(u"Sessions"_s), 0),
                ElementsAre("2025-02-28  07:00–08:00", "2025-03-01  08:00–08:00"));
    EXPECT_THAT(column(table(u"Sessions"_s), 1), ElementsAre("Ironhand Baulur", "Miser Khaolak"));
    EXPECT_THAT(players(), ElementsAre("Ada", "Bob"));
    EXPECT_TRUE(says(u"Sessions (2):"_s));
    EXPECT_TRUE(says(u"Session 2025-02-28  07:00–08:00 (2 players · 2 kills — double-click a "
                     "player for per-kill details):"_s));
    EXPECT_THAT(cards(), ElementsAre("Type=4/Sub=1: 40"));
    select_session(1);
    EXPECT_THAT(players(), ElementsAre("Bob"));
}

TEST_F(BaulurRun, KeepsTheSelectedSessionWhenAKillComesIn)
{
    open_page();
    select_session(1);
    kill(u"b2"_s, noon - 4.5 * hour, {u"Dot"_s});
    kill(u"a0"_s, noon - 40 * hour, {u"Ada"_s});
    page_->refresh();
    EXPECT_EQ(table(u"Sessions"_s).model()->rowCount(), 3);
    EXPECT_EQ(table(u"Sessions"_s).currentIndex().row(), 2);
    EXPECT_THAT(players(), ElementsAre("Bob", "Dot"));
    // Two sessions grow together: the kill that began the selected one is in the middle of it.
    kill(u"a3"_s, noon - 28.9 * hour, {u"Ada"_s});
    select_session(1);
    kill(u"a9"_s, noon - 30.9 * hour, {u"Joe"_s});
    page_->refresh();
    EXPECT_EQ(table(u"Sessions"_s).currentIndex().row(), 1);
    EXPECT_THAT(players(), ElementsAre("Ada", "Bob", "Joe"));
    select_session(2);
    sql(u"DELETE FROM trial_reports WHERE file_name = 'b1'"_s); // which began it
    page_->refresh();
    EXPECT_EQ(table(u"Sessions"_s).currentIndex().row(), 2);
}

TEST_F(BaulurRun, SumsUpTheChosenPlayerWithoutTouchingTheSessions)
{
    open_page();
    EXPECT_EQ(player().count(), 3);
    player().setCurrentText(u"Bob  (2)"_s);
    EXPECT_THAT(cards(), ElementsAre("Type=4/Sub=1: 20"));
    EXPECT_EQ(table(u"Sessions"_s).model()->rowCount(), 2);
    sql(u"DELETE FROM trial_participants WHERE player_name = 'Bob'"_s);
    page_->refresh();
    EXPECT_EQ(player().currentText(), u"All players"_s);
    EXPECT_THAT(cards(), ElementsAre("Type=4/Sub=1: 20")); // of Ada
}

TEST_F(BaulurRun, ShowsEveryBossWhereNoneIsChosen)
{
    open_page();
    for (const QString &boss : {u"Ironhand Baulur"_s, u"Miser Khaolak"_s})
        named<QCheckBox>(boss).setChecked(false);
    EXPECT_EQ(column(table(u"Sessions"_s), 1).back(), "Miser Khaolak"); // not before a refresh
    press(u"Refresh"_s);
    EXPECT_EQ(column(table(u"Sessions"_s), 1).back(), "Miser Khaolak + Somebody else");
}

TEST_F(BaulurRun, KeepsWhatItHasWhereAQueryFails)
{
    open_page();
    sql(u"ALTER TABLE trial_loot RENAME TO gone"_s);
    kill(u"d1"_s, noon - hour, {});
    page_->refresh();
    EXPECT_EQ(table(u"Sessions"_s).model()->rowCount(), 3);
    EXPECT_THAT(cards(), ElementsAre("Type=4/Sub=1: 40"));
    EXPECT_THAT(players(), ElementsAre("Ada", "Bob"));
    player().setCurrentText(u"Bob  (2)"_s);
    sql(u"ALTER TABLE trial_participants RENAME TO gone_as_well"_s);
    page_->refresh();
    EXPECT_EQ(player().count(), 1);
}

TEST_F(BaulurRun, IsEmptyWhereNothingFits)
{
    now_ = noon + 100 * 24 * hour;
    open_page();
    EXPECT_TRUE(says(u"Sessions (0):"_s));
    EXPECT_TRUE(says(u"Players in selected session:"_s));
    EXPECT_THAT(cards(), IsEmpty());
    EXPECT_THAT(players(), IsEmpty());
}

TEST_F(BaulurRun, OpensTheKillsOfAPlayer)
{
    kill(u"a3"_s, noon - 28.5 * hour, {u"<b>Ada</b>"_s, u"Ada"_s});
    open_page();
    double_click(table(u"Players"_s), 0);
    auto &kills = *dialog().findChild<ui::ItemRowTable *>();
    EXPECT_EQ(dialog().windowTitle(), u"Player kills — Ada"_s);
    EXPECT_THAT(column(kills, 0),
                ElementsAre("2025-02-28 08:30:00", "2025-02-28 08:00:00", "2025-02-28 07:00:00"));
    EXPECT_THAT(column(kills, 3), ElementsAre("0.50%", "0.50%", "0.50%"));
    close_dialog();
    double_click(table(u"Players"_s), 1);
    EXPECT_EQ(dialog().findChild<QLabel *>()->text(),
              u"<b>&lt;b&gt;Ada&lt;/b&gt;</b>  ·  1 kills in this session"_s);
    close_dialog();
}

} // namespace
} // namespace tally::test
