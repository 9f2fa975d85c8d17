#pragma once

#include "platform/host/host.h"

#include <xcb/xcb.h>

#include <array>
#include <atomic>
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

    bool connected();
    void connect();
    void drop_events();
    bool managed();

    // A question is sent when it is asked. Reading the answer waits for it, and for all that was
    // asked before.
    struct RectQuestion {
        xcb_get_geometry_cookie_t geometry;
        xcb_translate_coordinates_cookie_t origin;
        xcb_get_property_cookie_t extents;
    };
    struct StateQuestion {
        xcb_get_property_cookie_t net_state;
        xcb_get_property_cookie_t wm_state;
    };
    struct ForegroundQuestion {
        xcb_window_t manager; ///< as it was known when it was asked
        xcb_get_property_cookie_t check;
        xcb_get_property_cookie_t check_of_manager;
        xcb_get_property_cookie_t active;
    };
    xcb_get_property_cookie_t ask(xcb_window_t window, Atom property);
    RectQuestion ask_rect(xcb_window_t client);
    StateQuestion ask_state(xcb_window_t client);
    ForegroundQuestion ask_foreground();
    std::vector<std::uint32_t> numbers(xcb_get_property_cookie_t question);
    std::vector<std::uint32_t> numbers(xcb_window_t window, Atom property);
    std::uint32_t first_number(xcb_get_property_cookie_t question);
    WindowRect rect_of(const RectQuestion &question);
    bool is_iconic(const StateQuestion &question);
    WindowHandle foreground_of(const ForegroundQuestion &question);

    std::optional<std::string> bytes(xcb_window_t window, xcb_atom_t property, xcb_atom_t type);
    std::vector<xcb_window_t> children_of_root();
    xcb_window_t top_level_of(xcb_window_t window);

    std::string display_;
    std::once_flag connect_once_;
    xcb_connection_t *connection_ = nullptr;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::atomic<xcb_window_t> manager_ = XCB_WINDOW_NONE; ///< the window that stood for it last
    std::array<xcb_atom_t, AtomCount> atoms_{};
};

} // namespace tally::platform
