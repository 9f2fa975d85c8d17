#pragma once

#include <QString>

class QApplication;

namespace tally::ui {

/// The program's look is one style sheet on the application. Themes are numbered 0 (dark) and 1
/// (light); the setting "theme" holds their names.

/// 1 for "light" in any letter case, 0 for everything else.
int theme_from_name(const QString &name);
/// "light" for 1, "dark" for everything else.
QString theme_name(int theme);
QString theme_stylesheet(int theme);
/// The style beneath the sheet, the same on every system, so that there is one look to look after.
inline QString base_style()
{
    return QStringLiteral("fusion");
}
/// Sets the theme's sheet and, after it, what `theme_additions` adds. Does nothing without an
/// application.
void apply_to_app(QApplication *app, int theme);

} // namespace tally::ui
