#include "platform/host/window_session.h"

namespace tally::platform {

QByteArray qt_platform_to_ask_for(const WindowSession &session)
{
    const bool x11_beside_wayland =
        !session.wayland_display.isEmpty() && !session.x_display.isEmpty();
    if (!x11_beside_wayland || !session.qt_platform.isEmpty())
        return {};
    return QByteArrayLiteral("xcb;wayland");
}

void prefer_x11_platform()
{
    const QByteArray platform = qt_platform_to_ask_for(
        {qgetenv("WAYLAND_DISPLAY"), qgetenv("DISPLAY"), qgetenv("QT_QPA_PLATFORM")});
    if (!platform.isEmpty())
        qputenv("QT_QPA_PLATFORM", platform);
}

} // namespace tally::platform
