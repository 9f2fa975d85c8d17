#include "ui/pinning/pin_geometry.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>

namespace tally::ui {
namespace {

using platform::WindowRect;

constexpr WindowRect game{100, 50, 1000, 600, true};

void expect_place(const PinPlace &place, const char16_t *anchor, int off_x, int off_y)
{
    EXPECT_EQ(anchor_text(place.anchor), QString::fromUtf16(anchor));
    EXPECT_EQ(place.off_x, off_x);
    EXPECT_EQ(place.off_y, off_y);
}

void expect_point(const PinPoint &point, int x, int y)
{
    EXPECT_EQ(point.x, x);
    EXPECT_EQ(point.y, y);
}

TEST(PinGeometry, AnyTextThatIsNoAnchorIsTheTopLeft)
{
    for (const char16_t *anchor : {u"tl", u"tr", u"bl", u"br"})
        EXPECT_EQ(anchor_text(anchor_of_text(QString::fromUtf16(anchor))),
                  QString::fromUtf16(anchor));
    for (const char16_t *other : {u"xx", u"", u"TR"})
        EXPECT_EQ(anchor_of_text(QString::fromUtf16(other)), PinAnchor::TopLeft);
}

TEST(PinGeometry, TheQuarterOfTheCentreIsTheAnchorAndTheMiddleCountsAsTopLeft)
{
    expect_place(place_by_centre({500, 300, 200, 100}, game), u"tl", 400, 250);
    expect_place(place_by_centre({501, 300, 200, 100}, game), u"tr", 399, 250);
    expect_place(place_by_centre({500, 301, 200, 100}, game), u"bl", 400, 249);
    expect_place(place_by_centre({900, 600, 200, 50}, game), u"br", 0, 0);
    expect_place(place_by_centre({50, 10, 200, 100}, game), u"tl", 0, 0);
    expect_place(place_by_centre({950, 600, 200, 100}, game), u"br", 0, 0);
}

TEST(PinGeometry, WithoutASizeTheOverlayCountsAsAHundredByForty)
{
    expect_place(place_by_centre({1000, 610, 0, 0}, game), u"br", 0, 0);
    expect_point(position_inside({PinAnchor::BottomRight, 0, 0}, {0, 0, 0, 10}, game), 1000, 610);
}

TEST(PinGeometry, AnOverlayStaysInsideAGameThatHasShrunk)
{
    constexpr OverlayBox overlay{0, 0, 200, 100};
    expect_point(position_inside({PinAnchor::TopLeft, 5000, 7}, overlay, game), 900, 57);
    expect_point(position_inside({PinAnchor::BottomRight, 5000, 5000}, overlay, game), 100, 50);
    constexpr WindowRect tiny{100, 50, 80, 30, true};
    expect_point(position_inside({PinAnchor::TopLeft, 20, 80}, overlay, tiny), 100, 50);
    expect_point(position_inside({PinAnchor::BottomRight, 20, 80}, overlay, tiny), -20, -20);
}

TEST(PinGeometry, TheNearestCornerIsTheAnchorAndTheEarlierWinsATie)
{
    expect_place(place_by_nearest_corner({120, 130, 280, 300}, game), u"tl", 20, 80);
    expect_place(place_by_nearest_corner({1090, 40, 280, 300}, game), u"tr", 10, -10);
    expect_place(place_by_nearest_corner({90, 600, 280, 300}, game), u"bl", -10, 50);
    expect_place(place_by_nearest_corner({1200, 700, 280, 300}, game), u"br", -100, -50);
    expect_place(place_by_nearest_corner({600, 350, 1, 1}, game), u"tl", 500, 300);
    expect_place(place_by_nearest_corner({601, 350, 1, 1}, game), u"tr", 499, 300);
}

TEST(PinGeometry, OffsetsBeyondAllScreensDoNotOverflow)
{
    constexpr int most = std::numeric_limits<int>::max();
    expect_point(position_from_corner({PinAnchor::TopLeft, most, most}, {}, game), most, most);
    expect_point(position_from_corner({PinAnchor::BottomRight, -most, -most}, {}, game), most,
                 most);
    expect_point(position_inside({PinAnchor::TopLeft, most, -most}, {0, 0, 200, 100}, game), 900,
                 50 - most);
    constexpr WindowRect far{-most, -most, most, most, true};
    EXPECT_EQ(place_by_nearest_corner({most, most, 1, 1}, far).off_x, -most);
    EXPECT_EQ(place_by_centre({-most, -most, 1, 1}, {most, most, 1, 1, true}).off_x, 0);
}

TEST(PinGeometry, PhysicalPixelsAreDividedByTheRatioAndRounded)
{
    const WindowRect rect = in_logical_pixels({101, -101, 301, 299, true}, 2.0);
    EXPECT_EQ(rect.x, 51);
    EXPECT_EQ(rect.y, -51);
    EXPECT_EQ(rect.w, 151);
    EXPECT_EQ(rect.h, 150);
    EXPECT_TRUE(rect.valid);
    EXPECT_EQ(in_logical_pixels({101, 0, 1, 1, true}, 0.0).x, 101);
    EXPECT_EQ(in_logical_pixels({101, 0, 1, 1, true}, -2.0).x, 101);
    EXPECT_FALSE(in_logical_pixels({1, 1, 1, 1, false}, 1.5).valid);
    const WindowRect beside = in_logical_pixels({1920 + 101, 30, 301, 300, true}, 1.5, {1920, 0});
    EXPECT_EQ(std::tie(beside.x, beside.y, beside.w, beside.h),
              std::make_tuple(1987, 20, 201, 200));
}

int on_screen()
{
    return *rc::gen::inRange(-4000, 4000);
}

RC_GTEST_PROP(PinGeometry, AnOverlayInsideTheGameKeepsItsPlace, ())
{
    const OverlayBox overlay{on_screen(), on_screen(), *rc::gen::inRange(1, 800),
                             *rc::gen::inRange(1, 800)};
    const WindowRect around{
        overlay.x - *rc::gen::inRange(0, 900), overlay.y - *rc::gen::inRange(0, 900),
        overlay.w + *rc::gen::inRange(900, 1800), overlay.h + *rc::gen::inRange(900, 1800), true};
    const PinPoint back = position_inside(place_by_centre(overlay, around), overlay, around);
    RC_ASSERT(back.x == overlay.x);
    RC_ASSERT(back.y == overlay.y);
}

RC_GTEST_PROP(PinGeometry, ACornersOverlayKeepsItsPlaceAnywhere, ())
{
    const OverlayBox overlay{on_screen(), on_screen(), 280, 300};
    const WindowRect any{on_screen(), on_screen(), *rc::gen::inRange(1, 4000),
                         *rc::gen::inRange(1, 4000), true};
    const PinPoint back = position_from_corner(place_by_nearest_corner(overlay, any), overlay, any);
    RC_ASSERT(back.x == overlay.x);
    RC_ASSERT(back.y == overlay.y);
}

} // namespace
} // namespace tally::ui
