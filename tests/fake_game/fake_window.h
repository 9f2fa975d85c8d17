#pragma once

#include <xcb/xcb.h>

#include <string>

namespace tally::test {

/// A plain top-level X11 window of 640 by 360, at 120, 90 where nobody places it elsewhere.
class FakeWindow {
public:
    explicit FakeWindow(const std::string &title);
    ~FakeWindow();
    FakeWindow(const FakeWindow &) = delete;
    FakeWindow &operator=(const FakeWindow &) = delete;

    void close();
    /// Asks the window manager.
    void set_full_screen(bool on);

private:
    void set_text(const char *property, const std::string &text);
    xcb_atom_t atom(const char *name);

    xcb_connection_t *connection_ = nullptr;
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

} // namespace tally::test
