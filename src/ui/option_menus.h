#pragma once

class QMenu;

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

/// The options of the statistics overlay and of the honor tracker: submenus that read and write
/// their settings ("overlay_…", "honor_tracker_…").
void add_overlay_options(QMenu &menu, data::TallyDb *db);
void add_tracker_options(QMenu &menu, data::TallyDb *db);

/// "Dark" and "Light" under the setting "theme"; the action's data is the number of its theme.
QMenu *add_theme_menu(QMenu &menu, const data::TallyDb &db);

} // namespace tally::ui
