#pragma once

#include "platform/host/host.h"

namespace tally::platform {

/// Windows.
class Win32Host : public Host {
public:
    std::vector<WindowHandle> top_level_windows() override;
    bool window_exists(WindowHandle window) override;
    bool window_visible(WindowHandle window) override;
    bool window_minimised(WindowHandle window) override;
    std::u16string window_title(WindowHandle window) override;
    std::uint32_t window_process_id(WindowHandle window) override;
    WindowRect window_rect(WindowHandle window) override;
    WindowHandle foreground_window() override;

    std::uint32_t own_process_id() override;
    std::u16string image_path(std::uint32_t process_id) override;
    void enable_debug_privilege() override;
    OpenedProcess open_process(std::uint32_t process_id) override;
    bool elevated() override;

    LockAttempt try_instance_lock() override;
    void pause(std::chrono::milliseconds duration) override;
};

} // namespace tally::platform
