#include "reference_icons.h"
#include "ui/parts/flow_layout.h"
#include "ui/parts/summary_card.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tally::ui {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(SummaryCard, ItsNameTellsTitleAndValueAsTheyAre)
{
    SummaryCard card(u"<i>Honor</i>"_s);
    EXPECT_EQ(card.accessibleName(), u"<i>Honor</i>: —");
    card.set_value(1'234'567);
    EXPECT_EQ(card.accessibleName(), u"<i>Honor</i>: 1 234 567");
    card.set_text(u"<b>5</b> & %1"_s);
    EXPECT_EQ(card.accessibleName(), u"<i>Honor</i>: <b>5</b> & %1");
    const auto labels = card.findChildren<QLabel *>();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_EQ(labels[0]->text(), u"<b>5</b> & %1");
    for (const QLabel *label : labels)
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

TEST(SummaryCard, StandsOutFromItsGround)
{
    QWidget ground;
    ground.setStyleSheet(u"QWidget { background-color: #ffffff; }"_s);
    SummaryCard card(u"Honor"_s, &ground);
    card.setGeometry(10, 10, 100, 60);
    const QPixmap picture = ground.grab();
    EXPECT_NEAR(colour_at(picture, 20, 15).red(), 255 - 0.12 * (255 - 88), 2);
    EXPECT_LT(colour_at(picture, 60, 10).red(), 255 - 0.30 * (255 - 88)) << "the border";
    EXPECT_EQ(colour_at(picture, 5, 5), QColor(Qt::white));
}

class Flow : public testing::Test {
protected:
    void fill(FlowLayout &layout, const QList<QSize> &sizes)
    {
        for (const QSize &size : sizes) {
            auto *item = new QWidget(&parent_);
            item->setFixedSize(size);
            layout.addWidget(item);
        }
    }
    static QList<QRect> places(FlowLayout &layout, const QRect &rect)
    {
        layout.setGeometry(rect);
        QList<QRect> places;
        for (int i = 0; i < layout.count(); ++i)
            places << layout.itemAt(i)->geometry();
        return places;
    }

    QWidget parent_;
};

TEST_F(Flow, ItemsThatDoNotFitBeginANewRow)
{
    FlowLayout layout(&parent_, 0, 10, 20);
    fill(layout, {{50, 30}, {50, 40}, {50, 10}});
    EXPECT_EQ(layout.heightForWidth(110), 40 + 20 + 10);
    EXPECT_EQ(layout.heightForWidth(109), 30 + 20 + 40 + 20 + 10);
    EXPECT_EQ(layout.heightForWidth(170), 40);
    EXPECT_EQ(places(layout, {5, 7, 110, 500}),
              (QList<QRect>{{5, 7, 50, 30}, {65, 7, 50, 40}, {5, 67, 50, 10}}));
    EXPECT_EQ(places(layout, {0, 0, 20, 500})[0], QRect(0, 0, 50, 30)) << "narrower than an item";
}

TEST_F(Flow, MarginsAndTheGreatestItemMakeItsLeastSize)
{
    FlowLayout layout(&parent_, 3);
    fill(layout, {{50, 30}, {20, 90}});
    EXPECT_EQ(layout.minimumSize(), QSize(56, 96));
    EXPECT_EQ(layout.sizeHint(), layout.minimumSize());
    EXPECT_EQ(layout.heightForWidth(500), 3 + 90 + 3);
    EXPECT_EQ(places(layout, {0, 0, 500, 500})[0].topLeft(), QPoint(3, 3));
    delete layout.takeAt(0);
    EXPECT_EQ(layout.takeAt(1), nullptr);
    EXPECT_EQ(layout.itemAt(-1), nullptr);
    EXPECT_EQ(layout.minimumSize(), QSize(26, 96));
}

TEST_F(Flow, InALayoutItsSpacesAreThoseOfThatLayout)
{
    auto *outer = new QVBoxLayout(&parent_);
    outer->setSpacing(13);
    auto *layout = new FlowLayout;
    outer->addLayout(layout);
    fill(*layout, {{50, 50}, {50, 50}, {50, 50}});
    EXPECT_EQ(places(*layout, {0, 0, 120, 200}),
              (QList<QRect>{{0, 0, 50, 50}, {63, 0, 50, 50}, {0, 63, 50, 50}}));
}

} // namespace
} // namespace tally::ui
