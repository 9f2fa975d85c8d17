#pragma once

#include <QString>

#include <optional>

namespace tally::data {

/// The name of an icon's file: the hash of its content and ".webp". The hash comes from the server:
/// nothing for one that has other characters than letters, digits, '-' and '_', since it could lead
/// out of the folder, and for the names of devices.
std::optional<QString> icon_file_name(const QString &hash);

} // namespace tally::data
