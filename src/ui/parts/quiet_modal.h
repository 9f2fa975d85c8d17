#pragma once

#include <Qt>

class QWidget;

namespace tally::ui {

/// Shows a window that blocks its parent's window, or all. While another program has the keyboard,
/// that keeps it: the window then blocks nothing until the user turns to the one below it.
void open_quietly(QWidget &window, Qt::WindowModality modality = Qt::WindowModal);

} // namespace tally::ui
