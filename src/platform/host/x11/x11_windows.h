#pragma once

#include "platform/host/host.h"

#include <xcb/xcb.h>

#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tally::platform {

/// The windows of an X server, through a connection of its own that opens at first use. Without a
/// server every question is answered with nothing.
class X11Windows {
public:
    /// `display` as in DISPLAY, which stands in for an empty text.
    explicit X11Windows(std::string display);
    ~X11Windows();
    X11Windows(const X11Windows &) = delete;
    X11Windows &operator=(const X11Windows &) = delete;

    std::vector<WindowHandle> top_level();
    bool exists(WindowHandle window);
    bool visible(WindowHandle window);
    bool minimised(WindowHandle window);
    std::u16string title(WindowHandle window);
    std::uint32_t process_id(WindowHandle window);
    WindowRect outer_rect(WindowHandle window);
    WindowHandle foreground();
    /// What a window manager has told of no change since is not asked again.
    WindowLook look_at(WindowHandle window);

private:
    enum Atom {
        ClientListStacking,
        SupportingWmCheck,
        ActiveWindow,
        NetWmName,
        NetWmPid,
        NetWmState,
        NetWmStateHidden,
        NetFrameExtents,
        WmState,
        Utf8String,
        AtomCount
    };

    /// What has been asked and still is to be answered.
    struct RectQuestion {
        xcb_get_geometry_cookie_t geometry;
        xcb_translate_coordinates_cookie_t origin;
        xcb_get_property_cookie_t frame;
    };
    struct FullLook {
        WindowLook look;
        bool is_managed = false; ///< whether a window manager runs
    };

    bool connected();
    void connect();
    void take_events();
    bool managed();
    void watch(WindowHandle window);
    FullLook ask_all(WindowHandle window);
    xcb_get_property_cookie_t ask(xcb_window_t window, Atom property);
    RectQuestion ask_rect(xcb_window_t window);
    std::vector<std::uint32_t> answer_to(xcb_get_property_cookie_t asked);
    WindowRect answer_to(const RectQuestion &asked);
    std::vector<std::uint32_t> numbers(xcb_window_t window, Atom property);
    bool is_minimised(xcb_get_property_cookie_t state, xcb_get_property_cookie_t icon_state);
    WindowHandle focused_top_level();
    std::optional<std::string> bytes(xcb_window_t window, xcb_atom_t property, xcb_atom_t type);
    std::vector<xcb_window_t> children_of_root();
    xcb_window_t top_level_of(xcb_window_t window);

    std::string display_;
    std::once_flag connect_once_;
    xcb_connection_t *connection_ = nullptr;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::array<xcb_atom_t, AtomCount> atoms_{};

    struct KeptLook {
        WindowHandle window;
        unsigned changes; ///< of which the look knows
        std::chrono::steady_clock::time_point at;
        WindowLook look;
    };
    std::atomic<unsigned> changes_ = 0; ///< that the server has told of
    std::mutex looks_mutex_;
    std::vector<KeptLook> looks_; ///< of windows whose changes the server tells, under the mutex
};

} // namespace tally::platform
