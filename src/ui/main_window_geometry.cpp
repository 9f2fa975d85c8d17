#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/main_window.h"

#include "ui/parts/window_bounds.h"

#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace tally::ui {
namespace {

bool on_some_screen(const QRect &frame)
{
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&frame](const QScreen *screen) {
        return screen->availableGeometry().intersects(frame);
    });
}

/// The window's frame in the bytes of `QWidget::saveGeometry`, an empty rectangle if they are none.
/// `restoreGeometry` itself takes what is cut off for zeros, and moves a lost window to the edge of
/// some screen.
QRect saved_frame(const QByteArray &bytes)
{
    constexpr quint32 magic_number = 0x1d9d0cb;
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_4_0);
    quint32 magic = 0;
    quint16 major_version = 0;
    quint16 minor_version = 0;
    QRect frame;
    QRect inside;
    stream >> magic >> major_version >> minor_version >> frame >> inside;
    return stream.status() == QDataStream::Ok && magic == magic_number ? frame : QRect();
}

} // namespace

bool MainWindow::restore_geometry()
{
    const auto bytes =
        QByteArray::fromBase64(around_.settings.get(settings::window_geometry_qt).toLatin1());
    if (const QRect frame = saved_frame(bytes); frame.isValid()) {
        if (!on_some_screen(frame))
            return false;
        restoreGeometry(bytes);
    }
    return on_some_screen(frameGeometry());
}

void MainWindow::place_in_the_middle()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    constexpr QSize size(1400, 900);
    const QRect available = screen->availableGeometry();
    const QPoint corner(available.left() + (available.width() - size.width()) / 2,
                        available.top() + (available.height() - size.height()) / 2);
    const QMargins margins = frame_margins(*this);
    const QRect frame = bounded_frame({corner, size.grownBy(margins)}, available);
    resize(frame.size().shrunkBy(margins));
    move(frame.topLeft());
}

void MainWindow::show_as_it_was()
{
    if (leaving_)
        return;
    show();
    if (around_.settings.get(settings::window_maximized))
        showMaximized();
    else
        showNormal();
    raise();
    activateWindow();
}

void MainWindow::save_window_state()
{
    around_.settings.set(settings::window_geometry_qt,
                         QString::fromLatin1(saveGeometry().toBase64()));
    around_.settings.set(settings::window_maximized, isMaximized());
}

} // namespace tally::ui
