#include "app/console/command_line.h"
#include "app/console/console_mode.h"
#include "app/gui/gui_startup.h"
#include "platform/host/parent_console.h"
#include "platform/host/process_end.h"
#include "platform/log/error_stream.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

using namespace tally;
using namespace tally::app;

/// Windows' narrow arguments lack what the code page lacks.
QString folder_of(const Command &command)
{
#ifdef Q_OS_WIN
    constexpr size_t own_name = 1;
    return QCoreApplication::arguments().value(
        static_cast<qsizetype>(command.folder_at + own_name));
#else
    return QString::fromLocal8Bit(command.folder);
#endif
}

int run_console(const Command &command, int argc, char *argv[])
{
    platform::use_console_of_parent();
    qInstallMessageHandler(platform::print_message);
    const QCoreApplication application(argc, argv);
    switch (command.mode) {
    case Mode::test_db:
        return test_db();
    case Mode::test_parser:
        return test_parser();
    case Mode::test_master:
        return test_master();
    case Mode::import_only:
        return import_only(folder_of(command));
    case Mode::import_only_without_folder:
        platform::print_line(QStringLiteral("--import-only requires a mailcache directory path"));
        return 2;
    case Mode::help:
    case Mode::graphical:
        break;
    }
    std::fputs(usage_text().toLocal8Bit().constData(), stderr);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::span<const char *const> arguments(argv, static_cast<size_t>(argc));
    const Command command =
        parse_command_line(arguments.subspan(std::min(arguments.size(), size_t{1})));
    const int exit_code = command.mode == Mode::graphical ? run_graphical(argc, argv)
                                                          : run_console(command, argc, argv);
#ifdef Q_OS_WIN
    std::fflush(nullptr);
    platform::end_at_once(exit_code);
#else
    return exit_code;
#endif
}
