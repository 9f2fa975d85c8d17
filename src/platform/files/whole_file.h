#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

namespace tally::platform {

/// Writes a file that must be whole or absent: it takes the place of what was there only once all
/// of it has been written.
/// \return why it could not be written; then what was there stays.
[[nodiscard]] std::optional<QString> write_whole_file(const QString &path,
                                                      const QByteArray &content);

/// Why a file could not be written. Of a disk that is full a file tells only that less was written.
QString write_trouble(const QFileDevice &file);

} // namespace tally::platform
