#include "files/folder_stamp.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStorageInfo>

namespace tally::platform {

std::optional<FolderStamp> folder_stamp(const QString &dir)
{
    const QFileInfo folder(dir);
    if (!folder.isDir() || QStorageInfo(dir).fileSystemType() != "NTFS")
        return std::nullopt;
    const qint64 millis = folder.lastModified().toMSecsSinceEpoch();
    return FolderStamp{0, 0, static_cast<double>(millis) / 1e3, millis * 1'000'000};
}

} // namespace tally::platform
