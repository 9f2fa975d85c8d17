#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    // Without a screen unless somebody wants to watch.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QLocale::setDefault(QLocale(QLocale::English));
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
