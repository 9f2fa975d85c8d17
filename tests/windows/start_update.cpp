// start_update ZIP EXECUTABLE OLD_VERSION NEW_VERSION: starts the installation of a payload and
// ends, as the program does when it updates itself.

#include "platform/updater/install.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    namespace Updater = tally::platform::Updater;
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 5)
        return 2;
    const auto result = Updater::install_from_payload_zip(words[1], words[2], words[3], words[4],
                                                          false, Updater::system_tools());
    std::fputs(result.error.toUtf8().constData(), stderr);
    return result.ok ? 0 : 1;
}
