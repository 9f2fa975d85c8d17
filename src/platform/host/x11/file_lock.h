#pragma once

#include "platform/host/host.h"

#include <string>

namespace tally::platform {

/// The file that instances of one user and session contend for.
std::string instance_lock_path();

/// One try to lock the file, which is created if missing. The kernel drops the lock with the
/// process; the file stays, empty.
LockAttempt try_file_lock(const std::string &path);

} // namespace tally::platform
