#include "field_builders.h"
#include "support/print_qt.h"
#include "ui/field/attack_tree.h"
#include "ui/parts/table_export.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace tally::ui;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class Attacks : public testing::Test {
protected:
    Attacks() { tree_.resize(1'200, 200); }

    void show(const std::vector<std::vector<FieldAttack>> &reports,
              AttackTree::Place place = AttackTree::Place::Kept)
    {
        const std::vector<FieldAttack> attacks = all_of(reports);
        tree_.show_attacks(attacks, field_rows(attacks), place);
        tree_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&tree_));
    }

    QTreeWidgetItem &tour(int index) const { return *tree_.topLevelItem(index); }
    QTreeWidgetItem &report(int of_tour) const { return *tour(of_tour).child(0); }
    std::vector<std::pair<bool, bool>> unfolded() const
    {
        std::vector<std::pair<bool, bool>> all;
        for (int i = 0; i < tree_.topLevelItemCount(); ++i)
            all.emplace_back(tour(i).isExpanded(), report(i).isExpanded());
        return all;
    }

    AttackTree tree_{u"attacks"_s};
};

TEST_F(Attacks, CarryTheirNameAndAreColouredByTheirOutcome)
{
    auto attacks = report_of(3, u"a"_s);
    attacks[0].my_kill_points = 1;
    attacks[1].enemy_kill_points = 1;
    show({attacks});
    std::vector<QString> colours;
    for (int number = 0; number < 3; ++number) {
        const QTreeWidgetItem &attack = *report(0).child(number);
        EXPECT_EQ(attack.data(0, Qt::UserRole).toList(), (QVariantList{u"a"_s, number + 1.0}));
        EXPECT_EQ(attack.foreground(0), attack.foreground(12));
        const QVariant colour = attack.data(12, Qt::ForegroundRole);
        colours.push_back(colour.isValid() ? colour.value<QBrush>().color().name() : u"none"_s);
    }
    EXPECT_THAT(colours, ElementsAre(u"#0ca678"_s, u"#e03131"_s, u"none"_s));
    EXPECT_FALSE(tour(0).data(0, Qt::UserRole).isValid());
    EXPECT_FALSE(report(0).data(12, Qt::ForegroundRole).isValid());
}

TEST_F(Attacks, StayAsTheUserLeftThemWhenNewOnesComeIn)
{
    show({report_of(3, u"a"_s), report_of(7, u"b"_s)});
    EXPECT_THAT(unfolded(), ElementsAre(std::pair(true, true), std::pair(true, false)));
    tour(0).child(0)->child(1)->setSelected(true);
    tree_.setCurrentItem(report(0).child(1));
    tour(0).setExpanded(false);
    report(1).setExpanded(true);
    show({report_of(1, u"new"_s), report_of(3, u"a"_s), report_of(7, u"b"_s)});
    EXPECT_THAT(unfolded(),
                ElementsAre(std::pair(true, true), std::pair(false, true), std::pair(true, true)));
    ASSERT_EQ(tree_.selectedItems(), QList<QTreeWidgetItem *>{report(1).child(1)});
    EXPECT_EQ(tree_.currentItem(), report(1).child(1));
    show({report_of(3, u"a"_s), report_of(7, u"b"_s)}, AttackTree::Place::Left);
    EXPECT_THAT(unfolded(), ElementsAre(std::pair(true, true), std::pair(true, false)));
    EXPECT_THAT(tree_.selectedItems(), testing::IsEmpty());
}

TEST_F(Attacks, InViewStayInViewAndThoseAtTheTopSeeNewOnesComeIn)
{
    std::vector<std::vector<FieldAttack>> reports;
    for (int i = 0; i < 40; ++i)
        reports.push_back(report_of(1, u"tour %1"_s.arg(i)));
    const auto top = [this] {
        return tree_.itemAt(0, 0)->text(report_column).toStdString();
    };
    show(reports);
    reports.insert(reports.begin(), report_of(1, u"new"_s));
    show(reports);
    EXPECT_EQ(top(), "▸ Tour new  (1 atk, 1 rap)");
    tree_.scrollToItem(&tour(20), QAbstractItemView::PositionAtTop);
    reports.insert(reports.begin(), report_of(1, u"newer"_s));
    show(reports);
    EXPECT_EQ(top(), "▸ Tour tour 19  (1 atk, 1 rap)");
    reports.erase(reports.begin() + 21); // what stood at the top
    show(reports);
    EXPECT_EQ(top(), "▸ Tour tour 20  (1 atk, 1 rap)");
    reports.front().front().my_kill_points = 5;
    show(reports, AttackTree::Place::Left);
    EXPECT_EQ(top(), "▸ Tour newer  (1 atk, 1 rap)");
}

TEST_F(Attacks, AreCopiedFlatAlsoThoseOfASelectedTour)
{
    show({report_of(2, u"a"_s), report_of(1, u"b"_s), report_of(2, u"c"_s)});
    tour(2).setSelected(true);
    report(0).child(1)->setSelected(true);
    QTest::keySequence(&tree_, QKeySequence::Copy);
    QStringList numbers;
    for (const QString &line : QGuiApplication::clipboard()->text().split(u'\n').mid(1))
        numbers << line.section(u'\t', 0, 0) + line.section(u'\t', 3, 3);
    EXPECT_EQ(numbers, (QStringList{u"a2"_s, u"c1"_s, u"c2"_s, u""_s}));
}

TEST_F(Attacks, OpenByTheEnterKeyAndToursUnfoldByIt)
{
    show({report_of(1, u"a"_s)});
    const QSignalSpy entered(&tree_, &AttackTree::attackEntered);
    tree_.setCurrentItem(&tour(0));
    QTest::keyClick(&tree_, Qt::Key_Return);
    EXPECT_FALSE(tour(0).isExpanded());
    QTest::keyClick(&tree_, Qt::Key_Enter);
    EXPECT_TRUE(tour(0).isExpanded());
    EXPECT_EQ(entered.count(), 0);
    tree_.setCurrentItem(report(0).child(0));
    QTest::keyClick(&tree_, Qt::Key_Return);
    ASSERT_EQ(entered.count(), 1);
    EXPECT_EQ(entered[0][0].value<QTreeWidgetItem *>(), report(0).child(0));
}

} // namespace
