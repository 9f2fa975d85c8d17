#pragma once

#include "platform/host/fake/fake_memory.h"
#include "platform/host/host.h"

#include <deque>
#include <map>

namespace tally::platform {

struct FakeWindow {
    WindowHandle handle = no_window;
    std::u16string title;
    std::uint32_t pid = 0;
    WindowRect rect{100, 50, 1280, 720, true};
    bool visible = true;
    bool minimised = false;
};

struct FakeProcess {
    std::u16string image_path;
    std::shared_ptr<FakeImage> memory; ///< null: opening it is refused
    bool rights_missing = true;        ///< why it is refused
};

/// A system that does as its script says. The script is its public members.
class FakeHost : public Host {
public:
    std::vector<FakeWindow> windows; ///< top of the Z order first
    std::map<std::uint32_t, FakeProcess> processes;
    WindowHandle foreground = no_window;
    std::uint32_t own_pid = 1;
    bool is_elevated = false;
    std::deque<LockAttempt> lock_attempts; ///< answers in order; the last stays

    int enumerations = 0;
    int privilege_requests = 0;
    int opened = 0;
    int lock_tries = 0;
    std::chrono::milliseconds paused{0};

    std::vector<WindowHandle> top_level_windows() override;
    bool window_exists(WindowHandle window) override;
    bool window_visible(WindowHandle window) override;
    bool window_minimised(WindowHandle window) override;
    std::u16string window_title(WindowHandle window) override;
    std::uint32_t window_process_id(WindowHandle window) override;
    WindowRect window_rect(WindowHandle window) override;
    WindowHandle foreground_window() override { return foreground; }

    std::uint32_t own_process_id() override { return own_pid; }
    std::u16string image_path(std::uint32_t process_id) override;
    void enable_debug_privilege() override { ++privilege_requests; }
    OpenedProcess open_process(std::uint32_t process_id) override;
    bool elevated() override { return is_elevated; }

    LockAttempt try_instance_lock() override;
    void pause(std::chrono::milliseconds duration) override { paused += duration; }

private:
    const FakeWindow *find(WindowHandle window) const;
};

} // namespace tally::platform
