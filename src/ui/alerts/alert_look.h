#pragma once

class QWidget;

namespace tally::ui {

/// What the windows over the game have in common.

/// Frameless, on top of everything, deleted when it is closed, with a hand for a pointer.
void make_alert(QWidget &alert);
/// To be called from `paintEvent`: the background of a style sheet is drawn by nobody else.
void paint_alert(QWidget &alert);

} // namespace tally::ui
