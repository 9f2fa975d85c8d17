#pragma once

#include <Qt>

class QWidget;

namespace tally::ui {

/// Shows a window that blocks its parent's window, or all. While another program has the keyboard,
/// that keeps it: the window then blocks nothing until the user turns to the one below it.
void open_quietly(QWidget &window, Qt::WindowModality modality = Qt::WindowModal);

/// Whether a window of the program has the keyboard.
bool has_keyboard();

/// Shows a window that the user has asked for some time ago: quietly if he has turned to another
/// program since.
/// \param had_keyboard what `has_keyboard` said when he asked
void open_late(QWidget &window, bool had_keyboard, Qt::WindowModality modality = Qt::WindowModal);

} // namespace tally::ui
