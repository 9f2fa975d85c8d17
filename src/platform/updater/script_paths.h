#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace tally::platform::Updater {

/// Gives what exists a name in 8.3 form, where Windows has one; otherwise an empty text or the path
/// as it is.
using ShortNames = std::function<QString(const QString &path)>;

/// Where a path stands in a batch script, between quotes that the script's own text sets.
enum class ScriptLine { Batch, PowerShell };

/// Whether a line can carry the path as it is: '%', quotes and line ends would be read as something
/// else, and outside ASCII the letter that arrives depends on the console's code page.
bool is_safe_in(ScriptLine line, const QString &path);

/// The path in a form that the line can carry, with '\' between its parts; nothing if there is
/// none.
std::optional<QString> safe_path(const QString &path, ScriptLine line,
                                 const ShortNames &short_names);

} // namespace tally::platform::Updater
