#include "ui/pinning/overlay_drag.h"

#include "ui/pinning/pinned_overlay.h"

#include <QMouseEvent>
#include <QWidget>

#include <utility>

namespace tally::ui {

OverlayDrag::OverlayDrag(QWidget &overlay, PinState &pin) : overlay_(overlay), pin_(pin) {}

void OverlayDrag::press(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return;
    grip_ = event.globalPosition().toPoint() - overlay_.frameGeometry().topLeft();
    dragging_ = true;
    pin_.begin_drag();
}

void OverlayDrag::move(const QMouseEvent &event)
{
    if (dragging_ && (event.buttons() & Qt::LeftButton))
        overlay_.move(event.globalPosition().toPoint() - grip_);
}

void OverlayDrag::release()
{
    if (std::exchange(dragging_, false))
        pin_.end_drag(overlay_view(overlay_));
}

} // namespace tally::ui
