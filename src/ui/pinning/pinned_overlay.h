#pragma once

#include "ui/pinning/pin_state.h"

#include <QList>

class QMenu;
class QTimer;
class QWidget;

namespace tally::ui {

/// What both overlays do with their widgets on behalf of their pin state.

inline constexpr int pin_interval_ms = 50;

/// To be called in the constructor: a frameless window above all others, which comes up without
/// taking the focus from the game.
void make_overlay(QWidget &overlay, double opacity);

/// Whether the mouse reaches what lies below the overlay: as the setting says, now and at each
/// change. The window stays where it is, shown or hidden.
void follow_click_through(QWidget &overlay, Settings &settings, const Setting<bool> &setting);

/// Moves the overlay to where it can be seen if the screen that it stood on is gone.
void come_to_a_screen(QWidget &overlay);

OverlayView overlay_view(const QWidget &overlay);

/// Shows, hides and moves the overlay as told. It never takes the focus.
void apply_pin_step(const PinStep &step, QWidget &overlay);

/// Lets the user choose among `windows`; an empty list and a rejected dialog change nothing.
/// \return false if the overlay was destroyed meanwhile, and its state with it.
bool select_game_window(PinState &pin, const QList<platform::GameWindowInfo> &windows,
                        QWidget &overlay);

/// Pins or unpins the overlay, with the user's choice where there are several windows and none was
/// chosen yet, and starts or stops its timer.
void set_overlay_pinned(PinState &pin, bool pinned, QWidget &overlay, QTimer &pin_timer);

/// "Pin to game window", which sets the setting that the overlay follows, and "Select game
/// window...", for a menu that is made when it is to be opened.
void add_pin_actions(QMenu &menu, PinState &pin, Settings &settings, QWidget &overlay);

} // namespace tally::ui
