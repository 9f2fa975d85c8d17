#pragma once

#include <QByteArray>
#include <QString>

#include <span>

namespace tally::app {

enum class Mode {
    graphical,
    test_db,
    test_parser,
    test_master,
    import_only,
    import_only_without_folder,
    help,
};

/// What the command line asks for.
struct Command {
    Mode mode = Mode::graphical;
    QByteArray folder;    ///< of `import_only`, in the local 8-bit encoding
    size_t folder_at = 0; ///< among the arguments behind the program's name
};

/// Walks the arguments behind the program's name: the first one that names a mode decides, and one
/// that names nothing is skipped.
Command parse_command_line(std::span<const char *const> arguments);

QString usage_text();

} // namespace tally::app
