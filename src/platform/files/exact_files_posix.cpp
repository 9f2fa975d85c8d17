#include "platform/files/exact_files.h"

#include <algorithm>
#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tally::platform {
namespace {

using Directory = std::unique_ptr<DIR, decltype([](DIR *dir) { ::closedir(dir); })>;

bool is_regular(int dir, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_REG;
    struct stat status = {};
    return ::fstatat(dir, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
}

std::optional<FileStamp> stamp_in(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return std::nullopt;
    const timespec &time = status.st_mtim;
    return FileStamp{qint64{time.tv_sec} * 1'000'000'000 + time.tv_nsec, status.st_size};
}

} // namespace

FolderListing list_folder(const QString &dir)
{
    FolderListing listing;
    const Directory directory(::opendir(native_name_of_text(dir).constData()));
    if (!directory) {
        listing.failure = qt_error_string(errno);
        return listing;
    }
    errno = 0;
    while (const dirent *entry = ::readdir(directory.get())) {
        if (is_regular(::dirfd(directory.get()), *entry))
            listing.names += text_of_native_name(QByteArrayView(entry->d_name));
        errno = 0;
    }
    if (errno != 0)
        listing.failure = qt_error_string(errno);
    std::sort(listing.names.begin(), listing.names.end());
    return listing;
}

std::optional<FileStamp> file_stamp(const QString &path)
{
    struct stat status = {};
    ::stat(native_name_of_text(path).constData(), &status);
    return stamp_in(status);
}

std::optional<FileId> file_id(const QString &path)
{
    struct stat status = {};
    if (::stat(native_name_of_text(path).constData(), &status) != 0)
        return std::nullopt;
    return FileId{status.st_dev, status.st_ino};
}

bool file_exists(const QString &path)
{
    return ::access(native_name_of_text(path).constData(), F_OK) == 0;
}

struct InputFile::Native {
    int descriptor = -1;
    struct stat status = {};
};

InputFile::InputFile(const QString &path) : native_(std::make_unique<Native>())
{
    // A pipe under the name of a mail must not hold up who opens it.
    native_->descriptor =
        ::open(native_name_of_text(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (native_->descriptor >= 0)
        ::fstat(native_->descriptor, &native_->status);
}

InputFile::~InputFile()
{
    if (native_->descriptor >= 0)
        ::close(native_->descriptor);
}

std::optional<FileStamp> InputFile::stamp() const
{
    return stamp_in(native_->status);
}

qint64 InputFile::size() const
{
    return S_ISREG(native_->status.st_mode) ? native_->status.st_size : 0;
}

double InputFile::modified() const
{
    const timespec &time = native_->status.st_mtim;
    const qint64 milliseconds = qint64{time.tv_sec} * 1000 + time.tv_nsec / 1'000'000;
    return static_cast<double>(milliseconds) / 1000.0;
}

QByteArray InputFile::read(qint64 count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < count) {
        const ssize_t got =
            ::read(native_->descriptor, bytes.data() + filled, static_cast<size_t>(count - filled));
        if (got <= 0)
            break;
        filled += got;
    }
    bytes.truncate(filled);
    return bytes;
}

} // namespace tally::platform
