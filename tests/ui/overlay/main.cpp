#include <QApplication>
#include <QTemporaryFile>

#include <gtest/gtest.h>

/// Without a screen unless somebody wants to watch. There are two, of different scales.
int main(int argc, char *argv[])
{
    QTemporaryFile screens;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && screens.open()) {
        screens.write(R"({"screens": [
            {"name": "one", "x": 0, "y": 0, "width": 1600, "height": 900,
             "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
            {"name": "two", "x": 1600, "y": 0, "width": 1600, "height": 900,
             "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 2}]})");
        screens.close();
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
    }
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
