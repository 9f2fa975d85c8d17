#include "ui/items/item_tile.h"

#include "reference_icons.h"

namespace tally::ui {
namespace {

using namespace Qt::Literals::StringLiterals;

const ItemBadge badge{QColor(0x2d, 0x4b, 0x6a), QColor(0xe0, 0xb0, 0x4a)};

QPixmap texts(const QString &unit, const QString &quantity, int size, const QString &fallback = {})
{
    return render_item_tile({}, unit, quantity, {}, size, fallback);
}

bool has(const QPixmap &tile, const QColor &colour)
{
    return !box_of(tile, [&](const QColor &pixel) { return pixel == colour; }).isNull();
}

class ItemTileOfSize : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Sizes, ItemTileOfSize, testing::Values(28, 48, 56, 72));

TEST_P(ItemTileOfSize, FillAndBorderReachTheEdgesWithRoundedCorners)
{
    const int size = GetParam();
    const QPixmap tile = render_item_tile({}, {}, {}, badge, size, {});
    ASSERT_EQ(tile.size(), QSize(size, size));
    const int width = size / 24;
    for (const int inside : {0, width - 1}) {
        EXPECT_EQ(colour_at(tile, inside, size / 2), *badge.border) << inside;
        EXPECT_EQ(colour_at(tile, size / 2, size - 1 - inside), *badge.border) << inside;
    }
    EXPECT_EQ(colour_at(tile, width, size / 2), *badge.fill);
    EXPECT_EQ(colour_at(tile, size / 2, size / 2), *badge.fill);
    EXPECT_EQ(colour_at(tile, 0, 0).alpha(), 0);
}

TEST_P(ItemTileOfSize, TheIconIsCentredInItsProportionsInsteadOfTheFallback)
{
    const int size = GetParam();
    QPixmap icon(200, 100);
    icon.fill(Qt::red);
    const QPixmap tile = render_item_tile(icon, {}, {}, {}, size, u"S1"_s);
    const int side = (size - 2 * (size / 24)) * 85 / 100;
    const QRect box = painted_box(tile);
    EXPECT_EQ(box.width(), side);
    EXPECT_NEAR(box.height(), side / 2.0, 1);
    EXPECT_NEAR(box.center().x(), size / 2.0, 1);
    EXPECT_NEAR(box.center().y(), size / 2.0, 1);
    EXPECT_FALSE(has(tile, Qt::white));
}

TEST_P(ItemTileOfSize, TextsStandInTheirPlacesInTheirColours)
{
    const int size = GetParam();
    const QPixmap quantity = texts({}, u"7"_s, size);
    const QPoint lower_right = painted_box(quantity).bottomRight();
    EXPECT_NEAR(lower_right.x(), size - std::max(size / 24, 3), 2);
    EXPECT_NEAR(lower_right.y(), size - std::max(size / 24, 3), 1);
    EXPECT_TRUE(has(quantity, Qt::white));

    const QPixmap unit = texts(u"7"_s, {}, size);
    EXPECT_TRUE(QRect(0, 0, size / 2, size / 2).contains(painted_box(unit)));
    EXPECT_TRUE(has(unit, QColor(0xff, 0xd7, 0x5f)));

    const QPixmap fallback = texts({}, {}, size, u"S7"_s);
    EXPECT_NEAR(painted_box(fallback).center().x(), size / 2.0, 2);
    EXPECT_NEAR(painted_box(fallback).center().y(), size / 2.0, size / 8.0);
    EXPECT_TRUE(has(fallback, Qt::white));
}

TEST(ItemTile, TextsHaveABlackOutlineOnePixelWide)
{
    const QPixmap tile = texts({}, u"1"_s, 72);
    const QRect face = box_of(tile, [](const QColor &colour) { return colour.red() > 0; });
    EXPECT_EQ(painted_box(tile), face.adjusted(-1, -1, 1, 1));
    EXPECT_TRUE(has(tile, Qt::black));
}

TEST(ItemTile, TextsGrowAbove48AndLongOnesShrinkRatherThanLoseDigits)
{
    const auto height_at = [](int size) {
        return painted_box(texts({}, u"8"_s, size)).height();
    };
    EXPECT_EQ(height_at(28), height_at(48));
    EXPECT_GT(height_at(56), height_at(48));
    EXPECT_GT(height_at(72), height_at(56));
    for (const int size : {48, 56, 72}) {
        const QRect inside(1, 1, size - 2, size - 2);
        EXPECT_TRUE(inside.contains(painted_box(texts({}, u"1 234 567"_s, size)))) << size;
        EXPECT_TRUE(inside.contains(painted_box(texts(u"1,234,567"_s, {}, size)))) << size;
    }
}

TEST(ItemPictures, AnIconThatArrivesLaterIsShown)
{
    ReferenceIcons icons;
    const ItemTile tile{.icon = u"gem"_s, .unit = u"gems"_s, .size = 48, .fallback = u"S1"_s};
    const auto shown = [&] {
        return item_tile(tile, icons.folder()).toImage();
    };
    const QImage without = render_item_tile({}, {}, {}, item_badge(tile), 48, u"S1"_s).toImage();
    EXPECT_EQ(shown(), without);
    icons.index(u"all_loot"_s, u"gem"_s);
    EXPECT_EQ(shown(), without);
    icons.write_broken(u"gem"_s);
    EXPECT_EQ(shown(), without);
    icons.write(u"gem"_s, Qt::red);
    EXPECT_EQ(shown().pixelColor(24, 24), QColor(Qt::red));
    ASSERT_TRUE(QFile::remove(icons.file(u"gem"_s)));
    EXPECT_EQ(shown(), without);
}

TEST(ItemPictures, AFileIsReadOnceUntilThePicturesAreForgotten)
{
    ReferenceIcons icons;
    icons.add(u"all_loot"_s, u"gem"_s, Qt::red);
    const auto middle = [&](int size) {
        const ItemTile tile{.icon = u"gem"_s, .size = size};
        return colour_at(item_tile(tile, icons.folder()), size / 2, size / 2);
    };
    EXPECT_EQ(middle(48), QColor(Qt::red));
    icons.write(u"gem"_s, Qt::blue);
    EXPECT_EQ(middle(48), QColor(Qt::red));
    EXPECT_EQ(middle(72), QColor(Qt::red));
    forget_item_pictures();
    EXPECT_EQ(middle(48), QColor(Qt::blue));
}

TEST(ItemIcon, AnEmptyFileGoesSoThatTheIconIsFetchedAgain)
{
    const ReferenceIcons icons;
    QFile empty(icons.file(u"empty"_s));
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.close();
    EXPECT_TRUE(icon_picture(empty.fileName()).isNull());
    EXPECT_FALSE(empty.exists());
}

} // namespace
} // namespace tally::ui
