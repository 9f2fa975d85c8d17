#include "data/master/master_cache.h"
#include "platform/host/fake/fake_host.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "support/report_page_fixture.h"
#include "ui/field/attack_tree.h"
#include "ui/field/field_fight_details_window.h"
#include "ui/field/field_fights_tab.h"
#include "ui/parts/summary_card.h"

#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPointer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTextEdit>
#include <QWindow>

namespace tally::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr double day = 86'400.0;

class FieldFights : public ReportPage<ui::FieldFightsTab> {
protected:
    /// A mail of one army's attacks, won by these kill points.
    void fight(const QString &file, double time, const QVariantMap &values = {}, int attacks = 1)
    {
        data::FieldReport report;
        for (int number = 1; number <= attacks; ++number) {
            QVariantMap row{{u"attack_id"_s, double(number)},
                            {u"attack_seq"_s, number},
                            {u"n_attacks"_s, attacks},
                            {u"tour_id"_s, file},
                            {u"email_time"_s, time},
                            {u"my_ct"_s, 1.0},
                            {u"player_id"_s, 5.0},
                            {u"player_name"_s, u"Ada"_s},
                            {u"my_kill_score"_s, 900},
                            {u"enemy_kill_score"_s, 300}};
            row.insert(values);
            report << row;
        }
        store_.db.insert_field_report(file, report, time);
    }

    void open_page(int mode = 0)
    {
        open(std::make_unique<ui::FieldFightsTab>(ui::Surroundings{.db = store_.db,
                                                                   .queries = queries_,
                                                                   .settings = settings_,
                                                                   .host = host_,
                                                                   .clock =
                                                                       [this] {
                                                                           return now_;
                                                                       }},
                                                  mode));
    }

    ui::AttackTree &tree() const { return *page_->findChild<ui::AttackTree *>(); }
    std::vector<std::string> tours() const
    {
        std::vector<std::string> names;
        for (int i = 0; i < tree().topLevelItemCount(); ++i)
            names.push_back(tree().topLevelItem(i)->text(0).section(u' ', 2, 2).toStdString());
        return names;
    }
    std::string card(const QString &key) const
    {
        return page_->findChild<ui::SummaryCard *>(key)->accessibleName().toStdString();
    }
    QLineEdit &edit(const QString &name) const { return named<QLineEdit>(name + u" (UTC)"_s); }
    QString period() const
    {
        return edit(u"From date"_s).text() + u'|' + edit(u"From time"_s).text() + u'|' +
               edit(u"To date"_s).text() + u'|' + edit(u"To time"_s).text();
    }
    void double_click_first(int depth) const
    {
        QTreeWidgetItem *item = tree().topLevelItem(0);
        for (int level = 0; level < depth; ++level)
            item = item->child(0);
        const QPoint at = tree().visualItemRect(item).center();
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(tree().viewport(), Qt::LeftButton, {}, at);
    }
    static QPushButton &star() { return *dialog().findChild<QPushButton *>(); }

    Settings settings_{store_.db};
    platform::FakeHost host_;
};

TEST_F(FieldFights, ShowTheAttacksOfTheirKindForTheBusiestPlayer)
{
    fight(u"open"_s, noon);
    fight(u"early"_s, noon - 900 * day, {}, 2);
    fight(u"other"_s, noon, {{u"player_id"_s, 6.0}, {u"player_name"_s, u"Bob"_s}});
    fight(u"rally"_s, noon, {{u"is_rally"_s, 1}});
    fight(u"walls"_s, noon, {{u"my_ct"_s, 2.0}});
    fight(u"kept"_s, noon, {{u"my_ct"_s, 9.0}});
    store_.db.set_field_favorite(u"kept"_s, true);
    const std::vector<std::string> kinds[] = {
        {"open", "early"}, {"rally"}, {"walls", "kept"}, {"kept"}};
    for (int mode = 0; mode < 4; ++mode) {
        open_page(mode);
        EXPECT_EQ(named<QComboBox>(u"Player"_s).currentText(), u"Ada"_s);
        EXPECT_EQ(tours(), kinds[mode]) << mode;
    }
    open_page();
    EXPECT_EQ(card(u"attacks"_s), "Attacks: 3");
    EXPECT_EQ(card(u"my_kp"_s), "My KP: 2 700");
    EXPECT_EQ(card(u"win_rate"_s), "Win rate: 100.0%");
    EXPECT_EQ(card(u"kp_ratio"_s), "KP ratio: 3.00");
    named<QComboBox>(u"Player"_s).setCurrentText(u"Bob"_s);
    EXPECT_THAT(tours(), ElementsAre("other"));
    store_.db.set_field_favorite(u"x"_s, true);
    page_->refresh();
    EXPECT_EQ(named<QComboBox>(u"Player"_s).currentText(), u"Bob"_s);
}

TEST_F(FieldFights, AreFilteredByTextsThatAreReadWhenAskedFor)
{
    fight(u"late"_s, noon + 12 * 3600 - 30); // 23:59:30
    fight(u"before"_s, noon - day);
    open_page();
    EXPECT_EQ(period(), u"|00:00||23:59"_s);
    EXPECT_EQ(tours().size(), 2u);
    auto &refresh = named<QPushButton>(u"Refresh"_s);

    edit(u"To time"_s).setText(u"10:00"_s);
    edit(u"To date"_s).setText(u"2025-03-01"_s);
    edit(u"From date"_s).setText(u"2025-03-01"_s);
    EXPECT_EQ(period(), u"2025-03-01|00:00|2025-03-01|23:59"_s); // a new date has its own time
    EXPECT_EQ(tours().size(), 2u);
    EXPECT_TRUE(refresh.property("pending").toBool());
    QTest::keyClick(&edit(u"To date"_s), Qt::Key_Return);
    EXPECT_THAT(tours(), ElementsAre("late"));
    EXPECT_FALSE(refresh.property("pending").toBool());

    edit(u"From date"_s).setText(u"2024-13-01"_s);
    EXPECT_TRUE(edit(u"From date"_s).property("unreadable").toBool());
    EXPECT_FALSE(edit(u"To date"_s).property("unreadable").toBool());
    press(u"Refresh"_s);
    EXPECT_EQ(tours().size(), 2u);
    edit(u"From time"_s).setText(u"07:00"_s);
    named<QComboBox>(u"Player"_s).setCurrentIndex(0);
    press(u"Clear filter"_s);
    EXPECT_EQ(period(), u"|00:00||23:59"_s);
    EXPECT_EQ(named<QComboBox>(u"Player"_s).currentText(), u"All players"_s);
}

TEST_F(FieldFights, StepByDaysFromTheDayInUtc)
{
    now_ = noon + 11.5 * 3600; // in Berlin the day after
    fight(u"a"_s, noon);
    open_page();
    edit(u"From time"_s).setText(u"07:00"_s);
    press(u"From: Previous day (-1)"_s);
    EXPECT_EQ(period(), u"2025-02-28|00:00||23:59"_s);
    press(u"To: Previous day (-1)"_s);
    EXPECT_EQ(tree().topLevelItem(0)->text(0), u"(no attacks in filter)"_s);
    press(u"To: Next day (+1)"_s);
    EXPECT_EQ(period(), u"2025-02-28|00:00|2025-03-01|23:59"_s);
    EXPECT_THAT(tours(), ElementsAre("a"));
}

TEST_F(FieldFights, KeepTheirRowsOverARefreshThatBringsNothing)
{
    fight(u"a"_s, noon, {{u"my_hid"_s, 7.0}});
    open_page();
    const QSignalSpy inserted(tree().model(), &QAbstractItemModel::rowsInserted);
    page_->refresh();
    store_.db.insert_fort_report(u"f"_s, fort(noon, {}), noon); // another page's
    page_->refresh();
    EXPECT_EQ(inserted.count(), 0);
    const QTreeWidgetItem *attack = tree().topLevelItem(0)->child(0)->child(0);
    EXPECT_EQ(attack->text(ui::my_heroes_column), u"H7 + "_s);
    data::MasterCache::instance().set_kind(
        u"heroes"_s, {{u"heroes"_s, QVariantMap{{u"7"_s, QVariantMap{{u"name"_s, u"Ajax"_s}}}}}});
    page_->refresh();
    data::MasterCache::instance().clear();
    attack = tree().topLevelItem(0)->child(0)->child(0);
    EXPECT_EQ(attack->text(ui::my_heroes_column), u"Ajax + "_s);
}

TEST_F(FieldFights, AreReadOnlyWhenTheyAreSeen)
{
    fight(u"a"_s, noon);
    open_page();
    page_->hide();
    fight(u"b"_s, noon + 1);
    page_->refresh();
    EXPECT_THAT(tours(), ElementsAre("a"));
    page_->show();
    EXPECT_THAT(tours(), ElementsAre("b", "a"));
}

TEST_F(FieldFights, KeepWhatTheyShowWhenTheStoreFails)
{
    fight(u"a"_s, noon);
    open_page();
    sql(u"ALTER TABLE field_reports RENAME TO elsewhere"_s);
    page_->refresh();
    EXPECT_EQ(named<QComboBox>(u"Player"_s).count(), 1); // "All players"
    EXPECT_EQ(card(u"attacks"_s), "Attacks: 0");
    EXPECT_THAT(tours(), ElementsAre("a"));
    sql(u"ALTER TABLE elsewhere RENAME TO field_reports"_s);
    page_->refresh();
    EXPECT_EQ(card(u"attacks"_s), "Attacks: 1");
}

TEST_F(FieldFights, KeepTheirColumnsBetweenStarts)
{
    open_page(1);
    EXPECT_EQ(tree().header()->sectionSize(0), 280);
    EXPECT_EQ(tree().header()->sectionSize(7), 45);
    tree().header()->resizeSection(3, 222);
    tree().header()->moveSection(3, 1);
    page_.reset();
    open_page(1);
    EXPECT_EQ(tree().header()->sectionSize(3), 222);
    EXPECT_EQ(tree().header()->logicalIndex(1), 3);
    open_page(2);
    EXPECT_EQ(tree().header()->logicalIndex(1), 1); // another page, other columns
}

TEST_F(FieldFights, OpenOneAttackInFull)
{
    fight(u"a"_s, noon,
          {{u"player_name"_s, u"<b>A & [*]"_s},
           {u"my_heq"_s, u"1:2_0;2:3_0;"_s},
           {u"my_hid2"_s, 7.0}},
          2);
    open_page();
    for (const int depth : {0, 1}) {
        double_click_first(depth);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_TRUE(tree().topLevelItem(0)->child(0)->isExpanded());
    }
    double_click_first(2);
    EXPECT_EQ(dialog().windowTitle(), u"Field Fight: <b>A & [*][*] vs ?  (attack 1/2)"_s);
    EXPECT_EQ(dialog().size(), QSize(1'100, 720));
    QStringList texts;
    for (const QGroupBox *group : dialog().findChildren<QGroupBox *>())
        texts << group->title();
    for (const QLabel *label : dialog().findChildren<QLabel *>()) {
        texts << label->text();
        EXPECT_TRUE(label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
    EXPECT_THAT(texts, Contains(u"2025-03-01 12:00:00 UTC"_s));
    EXPECT_THAT(texts, Contains(u"WIN"_s));
    EXPECT_THAT(texts, Contains(u"MY: <b>A && [*]  []"_s));
    EXPECT_EQ(texts.count(u"Skills:"_s), 3); // two heroes on one side, one on the other
    EXPECT_EQ(texts.count(u"Equipment (slot:eq_id_iconic:count):"_s), 1);
    QTextEdit *equipment = dialog().findChildren<QTextEdit *>().at(1);
    equipment->selectAll();
    equipment->copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"1:2_0;2:3_0;"_s);
    QTest::keyClick(equipment, Qt::Key_Escape);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(FieldFights, AttacksAreKeptAmongTheFavorites)
{
    fight(u"a"_s, noon);
    open_page();
    double_click_first(2);
    EXPECT_EQ(star().text(), u"☆"_s);
    QTest::keyClick(&dialog(), Qt::Key_Return); // presses nothing
    EXPECT_FALSE(store_.db.is_field_favorite(u"a"_s));
    QTest::mouseClick(&star(), Qt::LeftButton);
    EXPECT_EQ(star().text(), u"★"_s);
    EXPECT_TRUE(store_.db.is_field_favorite(u"a"_s));
    close_dialog();
    double_click_first(2);
    EXPECT_EQ(star().text(), u"★"_s);
    sql(u"CREATE TRIGGER full BEFORE UPDATE ON field_reports "
        "BEGIN SELECT RAISE(ABORT, 'full'); END"_s);
    QTest::keyClick(&star(), Qt::Key_Space);
    EXPECT_EQ(star().text(), u"★"_s);
    sql(u"DROP TRIGGER full"_s);
    QTest::keyClick(&star(), Qt::Key_Space);
    EXPECT_EQ(star().text(), u"☆"_s);
    EXPECT_FALSE(store_.db.is_field_favorite(u"a"_s));
    close_dialog();
}

TEST_F(FieldFights, AStarThatWaitsForTheStoreOutlivesItsWindow)
{
    fight(u"a"_s, noon);
    queries::StoreQueries busy(store_.db, std::chrono::nanoseconds(0));
    auto let_go = std::make_shared<QSemaphore>();
    queries::Asker other(busy, queries::Sight::Seen);
    other.ask([let_go](const auto &, const auto &) { return let_go->tryAcquire(1, 5'000); },
              [](bool) {});
    const QPointer<QDialog> window = new ui::FieldFightDetailsWindow(
        *store_.db.field_attack(u"a"_s, {}),
        {.db = store_.db, .queries = busy, .settings = settings_, .host = host_});
    window->show();
    QTest::mouseClick(window->findChild<QPushButton *>(), Qt::LeftButton);
    QTest::keyClick(window, Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    let_go->release();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window; }));
    EXPECT_TRUE(store_.db.is_field_favorite(u"a"_s));
}

TEST_F(FieldFights, TheWindowOfAnAttackKeepsTheSizeThatItIsGiven)
{
    fight(u"a"_s, noon);
    open_page();
    double_click_first(2);
    dialog().windowHandle()->resize(900, 600); // as a window manager does
    ASSERT_TRUE(QTest::qWaitFor([] { return dialog().width() == 900; }));
    close_dialog();
    double_click_first(2);
    EXPECT_EQ(dialog().size(), QSize(900, 600));
    close_dialog();
}

} // namespace
} // namespace tally::test
