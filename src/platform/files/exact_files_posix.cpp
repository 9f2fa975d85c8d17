#include "platform/files/exact_files.h"

#include <QScopeGuard>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tally::platform {
namespace {

using Directory = std::unique_ptr<DIR, decltype([](DIR *dir) { ::closedir(dir); })>;

int open_file(const QByteArray &name, int flags, mode_t mode = 0)
{
    // A pipe under the name of a mail must not hold up who opens it.
    return ::open(name.constData(), flags | O_CLOEXEC | O_NONBLOCK, mode);
}

bool is_regular(int dir, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_REG;
    struct stat status = {};
    return ::fstatat(dir, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
}

/// A name in the same folder that no other copy in progress uses.
QByteArray partial_name_beside(const QByteArray &name)
{
    static std::atomic<unsigned> copies = 0;
    return name.first(name.lastIndexOf('/') + 1) + ".part-" + QByteArray::number(::getpid()) + '-' +
           QByteArray::number(++copies);
}

bool copy_bytes(int from, int to, off_t count)
{
    while (count > 0) {
        const ssize_t copied = ::sendfile(to, from, nullptr, static_cast<size_t>(count));
        if (copied <= 0)
            return false;
        count -= copied;
    }
    return true;
}

std::optional<FileStamp> stamp_in(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return std::nullopt;
    const timespec &time = status.st_mtim;
    return FileStamp{qint64{time.tv_sec} * 1'000'000'000 + time.tv_nsec, status.st_size};
}

} // namespace

QStringList regular_file_names(const QString &dir)
{
    QStringList names;
    const Directory directory(::opendir(native_name_of_text(dir).constData()));
    if (!directory)
        return names;
    while (const dirent *entry = ::readdir(directory.get())) {
        if (is_regular(::dirfd(directory.get()), *entry))
            names += text_of_native_name(QByteArrayView(entry->d_name));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<FileStamp> file_stamp(const QString &path)
{
    struct stat status = {};
    ::stat(native_name_of_text(path).constData(), &status);
    return stamp_in(status);
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
    native_->descriptor = open_file(native_name_of_text(path), O_RDONLY);
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

bool copy_file(const QString &from, const QString &to)
{
    const int source = open_file(native_name_of_text(from), O_RDONLY);
    if (source < 0)
        return false;
    const auto close_source = qScopeGuard([source] { ::close(source); });
    struct stat status = {};
    if (::fstat(source, &status) != 0 || !S_ISREG(status.st_mode) || file_exists(to))
        return false;

    const QByteArray name = native_name_of_text(to);
    const QByteArray partial = partial_name_beside(name);
    const int copy = open_file(partial, O_WRONLY | O_CREAT | O_TRUNC, status.st_mode & 0777);
    if (copy < 0)
        return false;
    const bool copied = copy_bytes(source, copy, status.st_size);
    const bool written = ::close(copy) == 0 && copied;
    if (written && ::rename(partial.constData(), name.constData()) == 0)
        return true;
    ::unlink(partial.constData());
    return false;
}

} // namespace tally::platform
