#include "reference_icons.h"
#include "ui/parts/card_layout.h"
#include "ui/parts/flow_layout.h"
#include "ui/parts/steady_icon.h"
#include "ui/parts/summary_card.h"

#include <QHBoxLayout>
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

QList<QRect> places(QLayout &layout, const QRect &rect)
{
    layout.setGeometry(rect);
    QList<QRect> places;
    for (int i = 0; i < layout.count(); ++i)
        places << layout.itemAt(i)->geometry();
    return places;
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

TEST_F(Flow, ARowCanStandInTheMiddle)
{
    FlowLayout layout(&parent_, 0, 10, 0);
    layout.setAlignment(Qt::AlignHCenter);
    fill(layout, {{50, 30}, {50, 30}, {20, 30}});
    EXPECT_EQ(places(layout, {0, 0, 120, 90}),
              (QList<QRect>{{5, 0, 50, 30}, {65, 0, 50, 30}, {50, 30, 20, 30}}));
}

/// Cards of different widths, and what a row of equal stretch would make of them.
class Cards : public testing::Test {
protected:
    Cards()
    {
        row_.setContentsMargins(0, 0, 0, 0);
        row_.setSpacing(6);
        for (const int width : {50, 120, 80, 50, 70}) {
            for (QWidget *parent : {&cards_parent_, &row_parent_}) {
                auto *card = new QWidget(parent);
                card->setMinimumSize(width, 40);
                parent->layout()->addWidget(card);
            }
            row_.setStretch(row_.count() - 1, 1);
        }
        cards_.setContentsMargins(0, 0, 0, 0);
    }

    QList<QRect> places_of_cards(int width)
    {
        return places(cards_, {0, 0, width, cards_.heightForWidth(width)});
    }

    QWidget cards_parent_;
    QWidget row_parent_;
    CardLayout cards_{6, &cards_parent_};
    QHBoxLayout row_{&row_parent_};
};

TEST_F(Cards, StandAsARowOfEqualStretchWhereTheyFit)
{
    for (const int width : {394, 450, 700, 1'000}) {
        const QList<QRect> cards = places_of_cards(width);
        row_.setGeometry({0, 0, width, 40});
        for (int i = 0; i < cards.size(); ++i) {
            EXPECT_NEAR(cards[i].left(), row_.itemAt(i)->geometry().left(), 2) << width << ' ' << i;
            EXPECT_NEAR(cards[i].right(), row_.itemAt(i)->geometry().right(), 2) << width;
        }
    }
}

TEST_F(Cards, StandInEqualRowsWhereTheyDoNot)
{
    EXPECT_EQ(cards_.heightForWidth(393), 40 + 6 + 40);
    EXPECT_EQ(places_of_cards(393), (QList<QRect>{{0, 0, 127, 40},
                                                  {133, 0, 127, 40},
                                                  {266, 0, 127, 40},
                                                  {0, 46, 127, 40},
                                                  {133, 46, 127, 40}}));
    EXPECT_EQ(cards_.heightForWidth(371), 3 * 40 + 2 * 6);
    EXPECT_EQ(cards_.heightForWidth(20), 5 * 40 + 4 * 6) << "narrower than a card";
    EXPECT_EQ(cards_.minimumSize(), QSize(120, 40));
}

TEST(SteadyIcon, ASelectionDoesNotTintIt)
{
    QPixmap red(8, 8);
    red.fill(Qt::red);
    const QPixmap selected = steady_icon(red).pixmap(8, QIcon::Selected);
    EXPECT_EQ(selected.toImage().pixelColor(4, 4), QColor(Qt::red));
}

} // namespace
} // namespace tally::ui
