#pragma once

#include "ui/pinning/pin_state.h"

#include <QList>

class QTimer;
class QWidget;

namespace tally::ui {

/// What both overlays do with their widgets on behalf of their pin state.

inline constexpr int pin_interval_ms = 50;

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

} // namespace tally::ui
