#pragma once

class QWidget;

namespace tally::ui {

/// Shows a window that blocks what its modality says, its parent's window if that is not set. While
/// another program has the keyboard, that keeps it: the window then blocks nothing until the user
/// turns to the one below it.
void open_quietly(QWidget &window);

/// Whether a window of the program has the keyboard.
bool has_keyboard();

/// Shows a window that the user has asked for some time ago: quietly if he has turned to another
/// program since.
/// \param had_keyboard what `has_keyboard` said when he asked
void open_late(QWidget &window, bool had_keyboard);

} // namespace tally::ui
