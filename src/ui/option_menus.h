#pragma once

class QMenu;

namespace tally {
class Settings;
}

namespace tally::ui {

/// The options of the statistics overlay and of the honor tracker: submenus that set their
/// settings ("overlay_…", "honor_tracker_…") and follow them.
void add_overlay_options(QMenu &menu, Settings &settings);
void add_tracker_options(QMenu &menu, Settings &settings);

/// "Dark" and "Light", which follow the setting "theme"; the action's data is the number of its
/// theme.
QMenu *add_theme_menu(QMenu &menu, Settings &settings);

} // namespace tally::ui
