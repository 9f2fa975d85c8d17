#include "app/console/command_line.h"

#include "platform/identity.h"

#include <string_view>

namespace tally::app {
namespace {

struct ModeName {
    std::string_view argument;
    Mode mode;
};

constexpr ModeName mode_names[] = {
    {"--test-db", Mode::test_db},
    {"--test-parser", Mode::test_parser},
    {"--test-master", Mode::test_master},
    {"--import-only", Mode::import_only},
    {"--help", Mode::help},
    {"-h", Mode::help},
};

} // namespace

Command parse_command_line(std::span<const char *const> arguments)
{
    for (size_t i = 0; i < arguments.size(); ++i) {
        // A restart after an update passes a word that must not be read as an option.
        if (arguments[i] == std::string_view("--post-update-check")) {
            ++i;
            continue;
        }
        for (const ModeName &name : mode_names) {
            if (name.argument != arguments[i])
                continue;
            if (name.mode != Mode::import_only)
                return {name.mode, {}, 0};
            if (i + 1 == arguments.size())
                return {Mode::import_only_without_folder, {}, 0};
            return {name.mode, arguments[i + 1], i + 1};
        }
    }
    return {};
}

QString usage_text()
{
    return QStringLiteral(
               "%1 %2\n\nusage:\n"
               "  ledgerline-tallyhand.exe                     launch GUI\n"
               "  ledgerline-tallyhand.exe --test-db           run TallyDb smoke test\n"
               "  ledgerline-tallyhand.exe --test-parser       run TallyParser smoke test\n"
               "  ledgerline-tallyhand.exe --test-master       run MasterCache smoke test\n"
               "  ledgerline-tallyhand.exe --import-only DIR   import DIR into ./tally-import.db\n"
               "  ledgerline-tallyhand.exe --help              this message\n")
        .arg(platform::application_name, platform::application_version);
}

} // namespace tally::app
