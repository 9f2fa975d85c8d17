#pragma once

#include <QByteArray>

namespace tally::platform {

/// The environment variables that tell which window systems a session offers.
struct WindowSession {
    QByteArray wayland_display; ///< WAYLAND_DISPLAY
    QByteArray x_display;       ///< DISPLAY
    QByteArray qt_platform;     ///< QT_QPA_PLATFORM: what the user asks for
};

/// The value for QT_QPA_PLATFORM, empty to leave the choice to Qt. Wayland tells no program where
/// another's window stands, so in a Wayland session that has XWayland the program runs on X11.
QByteArray qt_platform_to_ask_for(const WindowSession &session);

/// Applies that to this process. To be called before the application object exists.
void prefer_x11_platform();

} // namespace tally::platform
