#pragma once

#include <QMargins>
#include <QObject>
#include <QRect>
#include <QSet>

class QWidget;

namespace tally::ui {

/// A window's frame made no larger than the screen and moved onto it, the title bar first.
QRect bounded_frame(const QRect &frame, const QRect &available);

/// What the window manager puts around a window; a guess as long as it has not yet.
QMargins frame_margins(const QWidget &window);

/// Keeps every window of the application on its screen when it comes up. Where the user moves it
/// afterwards is his choice.
class WindowBounds : public QObject {
    Q_OBJECT

public:
    explicit WindowBounds(QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QSet<const QObject *> coming_; ///< shown, but not painted yet
};

} // namespace tally::ui
