#include "ui/pinning/pin_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tally::ui {

namespace {

using platform::WindowRect;

struct AnchorText {
    PinAnchor anchor;
    QLatin1StringView text;
};

/// Also the order in which corners are compared: among equals the earlier is nearer.
constexpr std::array<AnchorText, 4> anchors = {{{PinAnchor::TopLeft, QLatin1StringView{"tl"}},
                                                {PinAnchor::TopRight, QLatin1StringView{"tr"}},
                                                {PinAnchor::BottomLeft, QLatin1StringView{"bl"}},
                                                {PinAnchor::BottomRight, QLatin1StringView{"br"}}}};

bool at_right(PinAnchor anchor)
{
    return anchor == PinAnchor::TopRight || anchor == PinAnchor::BottomRight;
}

bool at_bottom(PinAnchor anchor)
{
    return anchor == PinAnchor::BottomLeft || anchor == PinAnchor::BottomRight;
}

/// Offsets come from settings that anybody may edit: sums are formed in 64 bits and cut to an int.
int saturated(qint64 value)
{
    return static_cast<int>(std::clamp<qint64>(value, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

int scaled(qint64 value, double ratio)
{
    return static_cast<int>(std::clamp(std::round(static_cast<double>(value) / ratio),
                                       double{std::numeric_limits<int>::min()},
                                       double{std::numeric_limits<int>::max()}));
}

/// Before its first layout an overlay has no size.
OverlayBox with_size(OverlayBox overlay)
{
    if (overlay.w <= 0 || overlay.h <= 0) {
        overlay.w = 100;
        overlay.h = 40;
    }
    return overlay;
}

qint64 right_of(const WindowRect &rect)
{
    return qint64{rect.x} + rect.w;
}

qint64 bottom_of(const WindowRect &rect)
{
    return qint64{rect.y} + rect.h;
}

} // namespace

QString anchor_text(PinAnchor anchor)
{
    const auto found = std::find_if(anchors.begin(), anchors.end(),
                                    [&](const AnchorText &a) { return a.anchor == anchor; });
    return found->text;
}

PinAnchor anchor_of_text(const QString &text)
{
    const auto found = std::find_if(anchors.begin(), anchors.end(),
                                    [&](const AnchorText &a) { return a.text == text; });
    return found != anchors.end() ? found->anchor : PinAnchor::TopLeft;
}

WindowRect in_logical_pixels(const WindowRect &rect, double pixel_ratio, const PinPoint &screen)
{
    const double ratio = pixel_ratio > 0 ? pixel_ratio : 1.0;
    const auto place = [ratio](int value, int origin) {
        return saturated(qint64{scaled(qint64{value} - origin, ratio)} + origin);
    };
    return {place(rect.x, screen.x), place(rect.y, screen.y), scaled(rect.w, ratio),
            scaled(rect.h, ratio), rect.valid};
}

PinPlace place_by_centre(const OverlayBox &overlay, const WindowRect &game)
{
    const OverlayBox box = with_size(overlay);
    const bool right = box.x + box.w * 0.5 - game.x > game.w * 0.5;
    const bool bottom = box.y + box.h * 0.5 - game.y > game.h * 0.5;
    const qint64 off_x = right ? right_of(game) - box.w - box.x : qint64{box.x} - game.x;
    const qint64 off_y = bottom ? bottom_of(game) - box.h - box.y : qint64{box.y} - game.y;
    const PinAnchor anchor = bottom ? (right ? PinAnchor::BottomRight : PinAnchor::BottomLeft)
                                    : (right ? PinAnchor::TopRight : PinAnchor::TopLeft);
    return {anchor, saturated(std::max<qint64>(off_x, 0)), saturated(std::max<qint64>(off_y, 0))};
}

PinPoint position_inside(const PinPlace &place, const OverlayBox &overlay, const WindowRect &game)
{
    const OverlayBox box = with_size(overlay);
    const qint64 ox = std::min<qint64>(std::max(qint64{game.w} - box.w, qint64{0}), place.off_x);
    const qint64 oy = std::min<qint64>(std::max(qint64{game.h} - box.h, qint64{0}), place.off_y);
    const qint64 x = at_right(place.anchor) ? right_of(game) - ox - box.w : game.x + ox;
    const qint64 y = at_bottom(place.anchor) ? bottom_of(game) - oy - box.h : game.y + oy;
    return {saturated(x), saturated(y)};
}

PinPlace place_by_nearest_corner(const OverlayBox &overlay, const WindowRect &game)
{
    const qint64 from_left = qint64{overlay.x} - game.x;
    const qint64 from_top = qint64{overlay.y} - game.y;
    const qint64 from_right = right_of(game) - overlay.x;
    const qint64 from_bottom = bottom_of(game) - overlay.y;
    PinPlace nearest;
    double least = std::numeric_limits<double>::infinity();
    for (const auto &[anchor, text] : anchors) {
        const qint64 dx = at_right(anchor) ? from_right : from_left;
        const qint64 dy = at_bottom(anchor) ? from_bottom : from_top;
        const double distance = static_cast<double>(dx) * static_cast<double>(dx) +
                                static_cast<double>(dy) * static_cast<double>(dy);
        if (distance < least) {
            least = distance;
            nearest = {anchor, saturated(dx), saturated(dy)};
        }
    }
    return nearest;
}

PinPoint position_from_corner(const PinPlace &place, const OverlayBox & /*overlay*/,
                              const WindowRect &game)
{
    const qint64 x =
        at_right(place.anchor) ? right_of(game) - place.off_x : qint64{game.x} + place.off_x;
    const qint64 y =
        at_bottom(place.anchor) ? bottom_of(game) - place.off_y : qint64{game.y} + place.off_y;
    return {saturated(x), saturated(y)};
}

} // namespace tally::ui
