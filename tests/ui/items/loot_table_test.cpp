#include "reference_icons.h"
#include "ui/items/drop_rate_delegate.h"
#include "ui/items/item_tile.h"
#include "ui/items/loot_table_model.h"
#include "ui/parts/table_export.h"

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QPainter>
#include <QStandardItemModel>

#include <limits>

namespace tally::ui {
namespace {

using namespace Qt::Literals::StringLiterals;

data::LootStat speedups()
{
    return {3.0, 60.0, u"=Speedup"_s, 60, u"min"_s, u"clock"_s, 1'234, 74'040, 1'001};
}

class LootTable : public testing::Test {
protected:
    QStringList texts(int row) const
    {
        QStringList texts;
        for (int column = 0; column < LootTableModel::ColumnCount; ++column)
            texts << model_.index(row, column).data().toString();
        return texts;
    }

    ReferenceIcons icons_;
    LootTableModel model_{icons_.folder()};
    QAbstractItemModelTester tester_{&model_,
                                     QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(LootTable, ShowsGroupedTextsAndExportsBareNumbers)
{
    const data::LootStat nameless{{}, 7.9, {}, 1, u"MIN"_s, {}, 0, 90, 0};
    model_.set_rows({speedups(), nameless}, 3'000);
    EXPECT_EQ(texts(0), (QStringList{u"  =Speedup"_s, u"1 234"_s, u"74 040 (1234.0 h / 51.4 d)"_s,
                                     u"1 001"_s, u"33.4%"_s}));
    EXPECT_EQ(csv_of(model_), "\xef\xbb\xbfItem,Qty,Total value,In how many battles,Drop rate\r\n"
                              "'=Speedup,1234,74040,1001,33.36666666666667\r\n"
                              "Type=0/Sub=7,0,90,0,0\r\n");

    model_.set_rows({nameless}, -1);
    EXPECT_EQ(texts(0), (QStringList{u"  Type=0/Sub=7"_s, u"0"_s, u"90"_s, u"0"_s, u"N/A"_s}));
    EXPECT_FALSE(model_.index(0, 4).data(LootTableModel::drop_rate_role).isValid());
}

TEST_F(LootTable, NumbersStandOnTheRightUnderTheirHeaders)
{
    model_.set_rows({speedups()}, 1);
    for (int column = 0; column < LootTableModel::ColumnCount; ++column) {
        const bool right = column >= 1 && column <= 3;
        EXPECT_EQ(model_.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).isValid(),
                  right);
        EXPECT_EQ(model_.index(0, column).data(Qt::TextAlignmentRole).toInt(),
                  (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
}

TEST_F(LootTable, TheItemHasAnIconOnceItsFileIsThere)
{
    model_.set_rows({speedups()}, 1);
    EXPECT_FALSE(model_.index(0, 0).data(Qt::DecorationRole).isValid());
    icons_.add(u"all_loot"_s, u"clock"_s, Qt::red);
    EXPECT_FALSE(model_.index(0, 1).data(Qt::DecorationRole).isValid());
    EXPECT_EQ(model_.index(0, 0).data(Qt::DecorationRole).value<QIcon>().pixmap(28, 28).toImage(),
              render_item_tile(icon_picture(icons_.file(u"clock"_s)), {}, {},
                               item_badge(speedups()), 28, {})
                  .toImage());
}

constexpr int track_left = 6;
constexpr int track_width = 200 - 6 - 8;

QPixmap painted(const QStyledItemDelegate &delegate, const QVariant &rate, bool selected = false)
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), u"N/A"_s);
    model.setData(model.index(0, 0), rate, LootTableModel::drop_rate_role);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 200, 30);
    option.state.setFlag(QStyle::State_Selected, selected);
    option.palette.setColor(QPalette::Highlight, Qt::magenta);
    QPixmap pixmap(option.rect.size());
    pixmap.fill(Qt::cyan);
    QPainter painter(&pixmap);
    delegate.paint(&painter, option, model.index(0, 0));
    return pixmap;
}

TEST(DropRateBar, HasTheWidthAndColourOfItsRate)
{
    const struct {
        double rate;
        int width;
        QColor colour;
    } cases[] = {{100, track_width, u"#2ecc71"_s},
                 {1e300, track_width, u"#2ecc71"_s},
                 {30, 55, u"#2ecc71"_s},
                 {29.99, 55, u"#f1c40f"_s},
                 {10, 18, u"#f1c40f"_s},
                 {9.99, 18, u"#e67e22"_s},
                 {0, 0, u"#e67e22"_s},
                 {std::numeric_limits<double>::quiet_NaN(), 0, u"#e67e22"_s}};
    for (const auto &[rate, width, colour] : cases) {
        const QRect box = box_of(painted(DropRateDelegate(), rate),
                                 [&bar = colour](const QColor &pixel) { return pixel == bar; });
        EXPECT_EQ(box, width > 0 ? QRect(track_left, 4, width, 22) : QRect()) << rate;
    }
}

TEST(DropRate, TheTextIsThatOfTheClampedRate)
{
    const auto image = [](double rate) {
        return painted(DropRateDelegate(), rate).toImage();
    };
    EXPECT_EQ(image(250.0), image(100.0));
    EXPECT_NE(image(99.9), image(99.8)) << "bars of the same width";
}

TEST(DropRate, OnlyWithARateTheCellIsABar)
{
    for (const bool selected : {false, true}) {
        EXPECT_EQ(painted(DropRateDelegate(), {}, selected).toImage(),
                  painted(QStyledItemDelegate(), {}, selected).toImage());
        EXPECT_EQ(colour_at(painted(DropRateDelegate(), 50.0, selected), 1, 1),
                  QColor(selected ? Qt::magenta : Qt::cyan));
    }
}

} // namespace
} // namespace tally::ui
