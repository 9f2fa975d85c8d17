#pragma once

#include "platform/host/host.h"
#include "platform/host/x11/x11_windows.h"

#include <string>

namespace tally::platform {

/// Linux: windows through X11, processes through /proc.
class X11Host : public Host {
public:
    /// `display` as in DISPLAY, which stands in for an empty text.
    explicit X11Host(std::string display = {}) : windows_(std::move(display)) {}

    std::vector<WindowHandle> top_level_windows() override { return windows_.top_level(); }
    bool window_exists(WindowHandle window) override { return windows_.exists(window); }
    bool window_visible(WindowHandle window) override { return windows_.visible(window); }
    bool window_minimised(WindowHandle window) override { return windows_.minimised(window); }
    std::u16string window_title(WindowHandle window) override { return windows_.title(window); }
    std::uint32_t window_process_id(WindowHandle window) override;
    WindowRect window_rect(WindowHandle window) override { return windows_.outer_rect(window); }
    WindowHandle foreground_window() override { return windows_.foreground(); }
    WindowLook look_at(WindowHandle window) override { return windows_.look_at(window); }

    std::uint32_t own_process_id() override;
    std::u16string image_path(std::uint32_t process_id) override;
    void enable_debug_privilege() override {}
    OpenedProcess open_process(std::uint32_t process_id) override;
    bool elevated() override;

    LockAttempt try_instance_lock() override;
    void pause(std::chrono::milliseconds duration) override;

private:
    X11Windows windows_;
};

} // namespace tally::platform
