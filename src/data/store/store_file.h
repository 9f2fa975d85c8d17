#pragma once

#include "platform/files/exact_files.h"

#include <QSqlDatabase>
#include <QString>

#include <mutex>
#include <optional>

namespace tally::data {

/// The file behind a store, and whether it is still the one that the program opened first. Any
/// thread may call any member.
class StoreFile {
public:
    explicit StoreFile(QString path) : path_(std::move(path)) {}

    const QString &path() const { return path_; }

    /// Opens a connection. Only the first one may make the file: one that were made anew under the
    /// running program would be empty and without tables.
    /// \return why it could not be opened
    std::optional<QString> open(QSqlDatabase &db);

    /// False if the file that was opened has been removed or has given its place to another.
    bool is_in_place() const;

private:
    std::optional<platform::FileId> opened() const;
    std::optional<platform::FileId> present() const;

    const QString path_;
    mutable std::mutex mutex_;
    std::optional<platform::FileId> opened_;
};

} // namespace tally::data
