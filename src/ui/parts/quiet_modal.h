#pragma once

#include <Qt>

class QDialog;

namespace tally::ui {

/// Shows a dialog that blocks its parent's window, or all. While another program has the keyboard,
/// that keeps it: the dialog then blocks nothing until the user turns to the window below it.
void open_quietly(QDialog &dialog, Qt::WindowModality modality = Qt::WindowModal);

} // namespace tally::ui
