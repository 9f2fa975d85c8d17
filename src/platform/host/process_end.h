#pragma once

#include <cstdlib>

namespace tally::platform {

/// Ends the process without any further ado. On Windows the usual way first ends all other threads
/// and then has the libraries clean up, and they may wait for a lock that such a thread still held:
/// the process then stays for ever.
#ifdef _WIN32
[[noreturn]] void end_at_once(int exit_code);
#else
[[noreturn]] inline void end_at_once(int exit_code)
{
    std::_Exit(exit_code);
}
#endif

} // namespace tally::platform
