#include "platform/files/exact_files.h"
#include "platform/files/file_copy.h"
#include "platform/files/file_copy_parts.h"

#include <QScopeGuard>

#include <atomic>
#include <cstdio>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tally::platform {
namespace {

using Directory = std::unique_ptr<DIR, decltype([](DIR *dir) { ::closedir(dir); })>;

/// A name in the same folder that no other copy in progress uses.
QByteArray partial_name_beside(const QByteArray &name)
{
    static std::atomic<unsigned> copies = 0;
    return name.first(name.lastIndexOf('/') + 1) + partial_prefix + QByteArray::number(::getpid()) +
           '-' + QByteArray::number(++copies);
}

/// Opens a partial copy and locks it, by which it is told from one whose writer ended.
int open_partial(const QByteArray &name, mode_t mode)
{
    constexpr int attempts = 3;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const int copy = ::open(name.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode);
        if (copy < 0)
            return copy;
        // A file system without locks lets nobody remove it either.
        ::flock(copy, LOCK_EX);
        struct stat status = {};
        if (::fstat(copy, &status) == 0 && status.st_nlink > 0)
            return copy;
        ::close(copy); // taken for abandoned before it was locked
    }
    return -1;
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

/// Whether all that was written has arrived, which some file systems tell only at a close. The file
/// itself stays open, and locked.
bool has_arrived(int file)
{
    const int twin = ::dup(file);
    return twin >= 0 && ::close(twin) == 0;
}

} // namespace

// A rename replaces in any case: what two processes copy at once is one file.
bool put_copy(const QString &from, const QString &to, bool /*replace*/)
{
    // A pipe under the name of a mail must not hold up who opens it.
    const int source =
        ::open(native_name_of_text(from).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (source < 0)
        return false;
    const auto close_source = qScopeGuard([source] { ::close(source); });
    struct stat status = {};
    if (::fstat(source, &status) != 0 || !S_ISREG(status.st_mode))
        return false;

    const QByteArray name = native_name_of_text(to);
    const QByteArray partial = partial_name_beside(name);
    const int copy = open_partial(partial, status.st_mode & 0777);
    if (copy < 0)
        return false;
    const auto close_copy = qScopeGuard([copy] { ::close(copy); });
    if (copy_bytes(source, copy, status.st_size) && has_arrived(copy) &&
        ::rename(partial.constData(), name.constData()) == 0)
        return true;
    ::unlink(partial.constData());
    return false;
}

void remove_abandoned_copies(const QString &dir)
{
    const Directory directory(::opendir(native_name_of_text(dir).constData()));
    if (!directory)
        return;
    const int folder = ::dirfd(directory.get());
    while (const dirent *entry = ::readdir(directory.get())) {
        if (!QByteArrayView(entry->d_name).startsWith(partial_prefix))
            continue;
        const int copy =
            ::openat(folder, entry->d_name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
        if (copy < 0)
            continue;
        if (::flock(copy, LOCK_EX | LOCK_NB) == 0)
            ::unlinkat(folder, entry->d_name, 0);
        ::close(copy);
    }
}

} // namespace tally::platform
