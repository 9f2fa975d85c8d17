#include "support/x_session.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    testing::InitGoogleTest(&argc, argv);
    const tally::test::XSession session;
    qputenv("DISPLAY", session.display());
    qputenv("QT_QPA_PLATFORM", session.running() ? "xcb" : "offscreen");
    // Where there is a desktop, icons go to its tray by way of this bus.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/none");
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
