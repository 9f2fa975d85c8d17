#include "ui/parts/window_bounds.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace tally::ui {
namespace {

bool is_exposed(const QWidget &window)
{
    return window.windowHandle() && window.windowHandle()->isExposed();
}

bool is_framed_window(const QWidget &widget)
{
    return widget.isWindow() && !(widget.windowFlags() & Qt::FramelessWindowHint) &&
           (widget.windowType() == Qt::Window || widget.windowType() == Qt::Dialog) &&
           !(widget.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen));
}

/// A window without a place of its own yet is given only its size: the window manager places it.
void keep_on_screen(QWidget &window)
{
    const QScreen *screen = window.screen();
    if (!is_framed_window(window) || !screen)
        return;
    const QMargins margins = frame_margins(window);
    const QRect frame = window.geometry().marginsAdded(margins);
    const QRect bounded = bounded_frame(frame, screen->availableGeometry());
    if (bounded.size() != frame.size())
        window.resize(bounded.size().shrunkBy(margins));
    const bool has_place = window.testAttribute(Qt::WA_Moved) || is_exposed(window);
    if (has_place && bounded.topLeft() != frame.topLeft())
        window.move(bounded.topLeft());
}

} // namespace

QRect bounded_frame(const QRect &frame, const QRect &available)
{
    const QSize size = frame.size().boundedTo(available.size());
    const QPoint last = available.bottomRight() - QPoint(size.width() - 1, size.height() - 1);
    return {QPoint(std::clamp(frame.left(), available.left(), last.x()),
                   std::clamp(frame.top(), available.top(), last.y())),
            size};
}

QMargins frame_margins(const QWidget &window)
{
    if (is_exposed(window))
        return window.windowHandle()->frameMargins();
    constexpr int side = 8;
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    return {side, title + side, side, side};
}

WindowBounds::WindowBounds(QObject *parent) : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool WindowBounds::eventFilter(QObject *watched, QEvent *event)
{
    const bool comes = event->type() == QEvent::Show && !event->spontaneous();
    const bool has_come = event->type() == QEvent::Paint && coming_.contains(watched);
    if ((comes || has_come) && watched->isWidgetType()) {
        auto *window = static_cast<QWidget *>(watched);
        if (comes && is_framed_window(*window)) {
            keep_on_screen(*window);
            coming_.insert(watched);
        } else if (has_come) {
            // Only now has the window manager told how wide its frame is.
            coming_.remove(watched);
            QTimer::singleShot(0, window, [window] { keep_on_screen(*window); });
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tally::ui
