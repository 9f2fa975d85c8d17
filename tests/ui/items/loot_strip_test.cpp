#include "ui/items/loot_strip.h"

#include "reference_icons.h"
#include "ui/items/hero_pair_icon.h"
#include "ui/items/item_tile.h"

namespace tally::ui {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(LootStrip, TilesStandInListOrderWithGapsBetween)
{
    ReferenceIcons icons;
    icons.add(u"all_loot"_s, u"gem"_s, Qt::red);
    ASSERT_TRUE(data::MasterCache::instance().load_json(
        u"items"_s,
        R"({"items": {"4.0_201.0": {"unit": "gems", "unit_value": 5, "icon": "gem"}}})"));
    const QPixmap strip = render_loot_strip({{4, 201, 12'345}, {9, 77, 1}}, icons.folder(), 72, 3);
    ASSERT_EQ(strip.size(), QSize(2 * 72 + 3, 72));
    EXPECT_EQ(strip.copy(0, 0, 72, 72).toImage(),
              render_item_tile(icon_picture(icons.file(u"gem"_s)), u"5"_s, u"12345"_s,
                               item_badge(u"gems"_s, {}, 5), 72, {})
                  .toImage());
    EXPECT_TRUE(painted_box(strip.copy(72, 0, 3, 72)).isNull());
    EXPECT_EQ(strip.copy(75, 0, 72, 72).toImage(),
              render_item_tile({}, {}, u"1"_s, item_badge({}, {}, 1), 72, u"S77"_s).toImage());
}

TEST(LootStrip, HasNoPictureForNothingAndABoundForTooMuch)
{
    EXPECT_TRUE(render_loot_strip({}, {}, 72, 3).isNull());
    const std::vector<data::LootStripItem> flood(100'000, {1, 1, 1});
    EXPECT_EQ(render_loot_strip(flood, {}, 72, 3).width(), 32'767 / 75 * 75 - 3);
}

TEST(HeroPair, ShowsTheUnknownHeroForWhomNoPictureIsThere)
{
    const struct {
        QString icon_1;
        QString icon_2;
        bool unknown_has_one;
        QColor left;
        QColor right;
    } cases[] = {{u"achilles.webp"_s, u"boudica"_s, true, Qt::red, Qt::blue},
                 {u"https://example.org/i/achilles.png"_s, u""_s, true, Qt::red, Qt::gray},
                 {u"charles.webp"_s, u"achilles"_s, false, Qt::transparent, Qt::red},
                 {u"nobody.webp"_s, u"charles.webp"_s, true, Qt::gray, Qt::gray}};
    for (const auto &[icon_1, icon_2, unknown_has_one, left, right] : cases) {
        SCOPED_TRACE(icon_1.toStdString());
        ReferenceIcons icons;
        icons.add(u"commanders"_s, u"achilles"_s, Qt::red);
        icons.add(u"commanders"_s, u"boudica"_s, Qt::blue);
        icons.index(u"commanders"_s, u"charles"_s);
        if (unknown_has_one)
            icons.add(u"commanders"_s, u"unknown"_s, Qt::gray);
        const QPixmap picture =
            render_hero_pair(icon_1, icon_2, icons.folder(), 48, 4).pixmap(100, 48);
        ASSERT_EQ(picture.size(), QSize(100, 48));
        EXPECT_EQ(colour_at(picture, 47, 47), left);
        EXPECT_EQ(colour_at(picture, 49, 24), QColor(Qt::transparent));
        EXPECT_EQ(colour_at(picture, 52, 0), right);
    }
}

TEST(HeroPair, APictureThatArrivesLaterIsShown)
{
    ReferenceIcons icons;
    const auto pair = [&] {
        return render_hero_pair(u"a.webp"_s, {}, icons.folder(), 48, 4);
    };
    EXPECT_TRUE(pair().isNull());
    icons.index(u"commanders"_s, u"a"_s);
    icons.write_broken(u"a"_s);
    EXPECT_EQ(colour_at(pair().pixmap(100, 48), 24, 24).alpha(), 0);
    icons.write(u"a"_s, Qt::red);
    EXPECT_EQ(colour_at(pair().pixmap(100, 48), 24, 24), QColor(Qt::red));
}

} // namespace
} // namespace tally::ui
