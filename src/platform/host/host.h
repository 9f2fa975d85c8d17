#pragma once

#include "platform/host/process_memory.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tally::platform {

/// A top-level window as the window system names it; opaque, 0 is none.
using WindowHandle = std::uintptr_t;
inline constexpr WindowHandle no_window = 0;

/// The outer rectangle of a window in physical pixels.
struct WindowRect {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;
    bool valid = false;
};

/// What who follows a window wants to know at every look.
struct WindowLook {
    bool usable = false; ///< see `window_usable`
    WindowRect rect;
    std::uint32_t process_id = 0;
    std::uint32_t foreground_process_id = 0; ///< of the window that has the user's attention
};

/// What an attempt to open a process for reading gave.
struct OpenedProcess {
    std::unique_ptr<ProcessMemory> memory; ///< null if it cannot be read
    bool rights_missing = false;           ///< refused for want of rights, not because it is gone
};

enum class LockOutcome { Taken, HeldElsewhere, Failed };

/// What one try at the single-instance lock gave.
struct LockAttempt {
    LockOutcome outcome = LockOutcome::Failed;
    unsigned long error = 0;    ///< the system's error number of a failure
    const char *mechanism = ""; ///< the system call that the lock rests on
};

class Host;
/// Whether a window can be followed: it exists, is shown and isn't minimised.
inline bool window_usable(Host &host, WindowHandle window);

/// The operating system as this program needs it: windows, processes, rights, one lock. Each
/// operation is primitive; everything that decides stands above. A failure is an ordinary answer
/// (no window, an empty text, a process id of 0), never an exception. May be called from several
/// threads at once. Plain standard C++, so that every backend builds without Qt.
class Host {
public:
    virtual ~Host() = default;

    /// All top-level windows, top of the Z order first.
    virtual std::vector<WindowHandle> top_level_windows() = 0;
    virtual bool window_exists(WindowHandle window) = 0;
    /// Whether the window is shown; a minimised window counts as shown.
    virtual bool window_visible(WindowHandle window) = 0;
    virtual bool window_minimised(WindowHandle window) = 0;
    virtual std::u16string window_title(WindowHandle window) = 0;
    /// The process that owns the window; 0 for no window, one that is gone, or one that won't say.
    virtual std::uint32_t window_process_id(WindowHandle window) = 0;
    virtual WindowRect window_rect(WindowHandle window) = 0;
    /// The window that has the user's attention, or `no_window`.
    virtual WindowHandle foreground_window() = 0;

    /// All of it at once, for a system where each answer is waited for.
    virtual WindowLook look_at(WindowHandle window)
    {
        return {window_usable(*this, window), window_rect(window), window_process_id(window),
                window_process_id(foreground_window())};
    }

    virtual std::uint32_t own_process_id() = 0;
    /// The full path of the process image; empty if it cannot be queried.
    virtual std::u16string image_path(std::uint32_t process_id) = 0;
    /// Asks for the right to read processes of others, where the system has such a thing.
    virtual void enable_debug_privilege() = 0;
    virtual OpenedProcess open_process(std::uint32_t process_id) = 0;
    /// Whether the program runs as administrator.
    virtual bool elevated() = 0;

    /// One try to become the only instance of the session. The lock is never given back: the
    /// system drops it when the process ends, however it ends.
    virtual LockAttempt try_instance_lock() = 0;
    virtual void pause(std::chrono::milliseconds duration) = 0;
};

inline bool window_usable(Host &host, WindowHandle window)
{
    return window != no_window && host.window_exists(window) && host.window_visible(window) &&
           !host.window_minimised(window);
}

} // namespace tally::platform
