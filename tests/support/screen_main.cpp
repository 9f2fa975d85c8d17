#include "support/x_session.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdio>

int main(int argc, char *argv[])
{
    testing::InitGoogleTest(&argc, argv);
    const tally::test::XSession session;
    const bool has_screen = session.running();
    if (!has_screen)
        std::fputs("Xvfb and openbox are needed; without them nothing is tested\n", stderr);
    qputenv("DISPLAY", session.display());
    qputenv("QT_QPA_PLATFORM", has_screen ? "xcb" : "offscreen");
    const QApplication application(argc, argv);
    return has_screen || testing::GTEST_FLAG(list_tests) ? RUN_ALL_TESTS() : 0;
}
