#include "platform/host/x11/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace tally::platform {

std::string instance_lock_path()
{
    const char *runtime_dir = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe)
    if (runtime_dir != nullptr && *runtime_dir == '/')
        return std::string{runtime_dir} + "/LedgerlineTallyhand-SingleInstance";
    return "/tmp/LedgerlineTallyhand-SingleInstance-" + std::to_string(::geteuid());
}

LockAttempt try_file_lock(const std::string &path)
{
    // A link that somebody else laid in a shared folder must not be followed.
    const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        return {LockOutcome::Failed, static_cast<unsigned long>(errno), "open"};
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0)
        return {LockOutcome::Taken, 0, "flock"}; // stays open: closing it would give the lock up
    const int error = errno;
    ::close(fd);
    if (error == EWOULDBLOCK)
        return {LockOutcome::HeldElsewhere, 0, "flock"};
    return {LockOutcome::Failed, static_cast<unsigned long>(error), "flock"};
}

} // namespace tally::platform
