#pragma once

#include <QPoint>

class QMouseEvent;
class QWidget;

namespace tally::ui {

class PinState;

/// Lets the left button drag an overlay. What becomes of the events is the overlay's business.
class OverlayDrag {
public:
    /// Both outlive the drag.
    OverlayDrag(QWidget &overlay, PinState &pin);

    void press(const QMouseEvent &event);
    void move(const QMouseEvent &event);
    /// Stores where the overlay was dragged to, if it was dragged.
    void release();

private:
    QWidget &overlay_;
    PinState &pin_;
    QPoint grip_; ///< of the mouse, from the frame's top left corner
    bool dragging_ = false;
};

} // namespace tally::ui
