#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tally::platform {

/// Writes a file that must be whole or absent: it takes the place of what was there only once all
/// of it has been written.
/// \return why it could not be written; then what was there stays.
[[nodiscard]] std::optional<QString> write_whole_file(const QString &path,
                                                      const QByteArray &content);

} // namespace tally::platform
