#pragma once

#include "ui/pinning/setting_menus.h"

#include <QString>

#include <array>

namespace tally::ui {

/// How the statistics overlay shows itself.
enum class OverlayMode { Full = 0, Compact1 = 1, Compact2 = 2 };

/// By the numbers of the modes.
inline constexpr std::array<ModeChoice, 3> overlay_modes{{
    {QLatin1StringView("full"), u"Full (vertical)"},
    {QLatin1StringView("compact1"), u"Compact (1 line)"},
    {QLatin1StringView("compact2"), u"Compact (2 lines)"},
}};

/// What a stored text stands for: "compact" is two lines, as earlier versions called them, and what
/// is no mode is the full one.
OverlayMode overlay_mode_of(const QString &text);
QString overlay_mode_key(OverlayMode mode);
/// The key of the mode that a stored text stands for.
QString overlay_menu_key(const QString &text);

} // namespace tally::ui
