#include "app/console/command_line.h"
#include "app/console/console_mode.h"
#include "app/gui/gui_startup.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

using namespace tally::app;

int run_console(const Command &command, int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    switch (command.mode) {
    case Mode::test_db:
        return test_db();
    case Mode::test_parser:
        return test_parser();
    case Mode::test_master:
        return test_master();
    case Mode::import_only:
        return import_only(QString::fromLocal8Bit(command.folder));
    case Mode::import_only_without_folder:
        std::fputs("--import-only requires a mailcache directory path\n", stderr);
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
    return command.mode == Mode::graphical ? run_graphical(argc, argv)
                                           : run_console(command, argc, argv);
}
