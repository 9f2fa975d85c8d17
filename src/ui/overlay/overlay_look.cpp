#include "ui/overlay/overlay_look.h"

#include <algorithm>

namespace tally::ui {

OverlayLook::OverlayLook(Theme theme, int font_size)
    : colours_(theme == Theme::Light
                   ? Colours{"#f5f5f7", "#5865f2", "#2b2f3a", "#5a5f6b", "#3d47c4"}
                   : Colours{"#1e1e2e", "#5865f2", "#e8eaed", "#8892a5", "#5865f2"}),
      font_size_(font_size)
{}

int OverlayLook::icon_side() const
{
    return std::max(font_size_ + 8, 20);
}

QString OverlayLook::window() const
{
    // A style sheet writes the "::" of a class's full name as "--". What lies within is neither
    // filled by the sheet of the application, whose theme may be another one, nor are dialogs above
    // the overlay written in its colours.
    return QStringLiteral("tally--ui--OverlayWindow { background: %1; border: 1px solid %2; }"
                          "#overlayContent QLabel { color: %3; background: transparent; }"
                          "#overlayContent { background: transparent; }")
        .arg(QLatin1StringView(colours_.bg), QLatin1StringView(colours_.border),
             QLatin1StringView(colours_.text));
}

QString OverlayLook::title() const
{
    return QStringLiteral("font-size: %1pt; font-weight: bold; color: %2;")
        .arg(font_size_)
        .arg(QLatin1StringView(colours_.accent));
}

QString OverlayLook::filter() const
{
    return QStringLiteral("font-size: %1pt; font-style: italic; color: %2;")
        .arg(std::max(font_size_ - 1, 8))
        .arg(QLatin1StringView(colours_.muted));
}

QString OverlayLook::section() const
{
    return QStringLiteral("color: %1; font-size: %2pt; font-weight: bold; padding-top: 6px;")
        .arg(QLatin1StringView(colours_.accent))
        .arg(std::max(font_size_ - 1, 8));
}

QString OverlayLook::caption() const
{
    return QStringLiteral("font-size: %1pt; color: %2;")
        .arg(font_size_)
        .arg(QLatin1StringView(colours_.muted));
}

QString OverlayLook::row_caption(const QString &colour) const
{
    return QStringLiteral("font-family: Consolas, monospace; font-size: %1pt; %2")
        .arg(font_size_)
        .arg(colour.isEmpty() ? QString() : QStringLiteral("color: %1;").arg(colour));
}

QString OverlayLook::value() const
{
    return QStringLiteral("font-family: Consolas, monospace; font-size: %1pt; font-weight: bold; "
                          "color: %2;")
        .arg(font_size_)
        .arg(QLatin1StringView(colours_.text));
}

QString OverlayLook::close_label(int side_padding) const
{
    return QStringLiteral("font-size: %1pt; font-weight: bold; color: %2; padding: 0 %3px;")
        .arg(font_size_)
        .arg(QLatin1StringView(colours_.muted))
        .arg(side_padding);
}

QString OverlayLook::hint() const
{
    return QStringLiteral("color: #555; font-size: %1pt; font-style: italic;")
        .arg(std::max(font_size_ - 3, 7));
}

} // namespace tally::ui
