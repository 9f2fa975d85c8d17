#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// One that holds the window at its usual size, as the platform's own does not.
void make_screen(const QTemporaryDir &folder)
{
    const QString path = folder.filePath(QStringLiteral("screen.json"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(R"({"screens": [{"name": "test", "x": 0, "y": 0, "width": 1600, "height": 1000,
                   "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + path.toLocal8Bit());
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir folder;
    make_screen(folder);
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
