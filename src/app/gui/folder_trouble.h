#pragma once

#include <QString>

#include <optional>

namespace tally::app {

/// What to tell the user if no file can be made in the folder of the program's data; nothing if one
/// can.
std::optional<QString> folder_trouble(const QString &data_dir);

} // namespace tally::app
