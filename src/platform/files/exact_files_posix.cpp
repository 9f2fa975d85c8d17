#include "files/exact_files.h"

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
    return ::open(name.constData(), flags | O_CLOEXEC, mode);
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

bool file_exists(const QString &path)
{
    return ::access(native_name_of_text(path).constData(), F_OK) == 0;
}

bool open_for_reading(QFile &file, const QString &path)
{
    const int descriptor = open_file(native_name_of_text(path), O_RDONLY);
    if (descriptor < 0)
        return false;
    if (file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
                  QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
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
