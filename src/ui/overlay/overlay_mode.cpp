#include "ui/overlay/overlay_mode.h"

#include <algorithm>

namespace tally::ui {

OverlayMode overlay_mode_of(const QString &text)
{
    if (text == u"compact")
        return OverlayMode::Compact2;
    const auto found = std::ranges::find(overlay_modes, text, &ModeChoice::key);
    return found != overlay_modes.end() ? OverlayMode(found - overlay_modes.begin())
                                        : OverlayMode::Full;
}

QString overlay_mode_key(OverlayMode mode)
{
    return overlay_modes.at(static_cast<std::size_t>(mode)).key;
}

QString overlay_menu_key(const QString &text)
{
    return overlay_mode_key(overlay_mode_of(text));
}

} // namespace tally::ui
