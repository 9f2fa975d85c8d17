#include "platform/files/folder_stamp.h"

#include "platform/files/exact_files.h"

#include <algorithm>
#include <array>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace tally::platform {
namespace {

constexpr std::array<long, 7> trusted_file_systems = {
    EXT4_SUPER_MAGIC,      // ext2 and ext3 too
    BTRFS_SUPER_MAGIC,     //
    XFS_SUPER_MAGIC,       //
    TMPFS_MAGIC,           //
    OVERLAYFS_SUPER_MAGIC, //
    F2FS_SUPER_MAGIC,      //
    0x2fc12fc1,            // ZFS, which has no name in the kernel's headers
};

} // namespace

std::optional<FolderStamp> folder_stamp(const QString &dir)
{
    const QByteArray path = native_name_of_text(dir);
    struct stat status = {};
    struct statfs system = {};
    if (::stat(path.constData(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        ::statfs(path.constData(), &system) != 0 ||
        std::find(trusted_file_systems.begin(), trusted_file_systems.end(), system.f_type) ==
            trusted_file_systems.end())
        return std::nullopt;
    const qint64 nanos = qint64{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
    return FolderStamp{status.st_dev, status.st_ino, static_cast<double>(nanos) / 1e9, nanos};
}

} // namespace tally::platform
