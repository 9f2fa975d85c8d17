#pragma once

#include "platform/host/host.h"

#include <QString>

namespace tally::ui {

/// The corner of the game window that an overlay keeps its distance to.
enum class PinAnchor { TopLeft, TopRight, BottomLeft, BottomRight };

/// "tl", "tr", "bl" or "br", as the settings store it. Any other text is read as the top left.
QString anchor_text(PinAnchor anchor);
PinAnchor anchor_of_text(const QString &text);

/// Where an overlay is pinned, in pixels from the sides that the anchor names.
struct PinPlace {
    PinAnchor anchor = PinAnchor::TopLeft;
    int off_x = 20;
    int off_y = 80;
};

struct PinPoint {
    int x = 0;
    int y = 0;
};

/// Where an overlay stands on the screen; a size of 0 before its first layout.
struct OverlayBox {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;
};

/// A rectangle of the window system in the pixels that Qt counts. A ratio that isn't above 0 counts
/// as 1.
/// \param screen the top left corner of the screen that the ratio is of, which is the same in both
platform::WindowRect in_logical_pixels(const platform::WindowRect &rect, double pixel_ratio,
                                       const PinPoint &screen = {});

/// The rule of the statistics overlay: the anchor is the quarter of the game that holds the
/// overlay's centre, offsets run between the sides, and the overlay stays inside the game.
PinPlace place_by_centre(const OverlayBox &overlay, const platform::WindowRect &game);
PinPoint position_inside(const PinPlace &place, const OverlayBox &overlay,
                         const platform::WindowRect &game);

/// The rule of the honor overlay: the anchor is the corner nearest to the overlay's top left
/// corner, offsets run from that corner to it, and nothing is clamped.
PinPlace place_by_nearest_corner(const OverlayBox &overlay, const platform::WindowRect &game);
PinPoint position_from_corner(const PinPlace &place, const OverlayBox &overlay,
                              const platform::WindowRect &game);

} // namespace tally::ui
