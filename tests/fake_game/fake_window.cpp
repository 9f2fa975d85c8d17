#include "fake_window.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tally::test {

FakeWindow::FakeWindow(const std::string &title)
{
    connection_ = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection_) != 0) {
        std::fputs("no display\n", stderr);
        std::exit(1);
    }
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 120, 90, 640, 360,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    set_text("_NET_WM_NAME", title);
    const auto pid = static_cast<std::uint32_t>(getpid());
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, atom("_NET_WM_PID"),
                        XCB_ATOM_CARDINAL, 32, 1, &pid);
    xcb_map_window(connection_, window_);
    xcb_flush(connection_);
}

FakeWindow::~FakeWindow()
{
    xcb_disconnect(connection_);
}

void FakeWindow::close()
{
    xcb_destroy_window(connection_, window_);
    xcb_flush(connection_);
}

void FakeWindow::set_full_screen(bool on)
{
    xcb_client_message_event_t wish{};
    wish.response_type = XCB_CLIENT_MESSAGE;
    wish.format = 32;
    wish.window = window_;
    wish.type = atom("_NET_WM_STATE");
    wish.data.data32[0] = on ? 1 : 0;
    wish.data.data32[1] = atom("_NET_WM_STATE_FULLSCREEN");
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    xcb_send_event(connection_, 0, screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&wish));
    xcb_flush(connection_);
}

void FakeWindow::set_text(const char *property, const std::string &text)
{
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, atom(property),
                        atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(text.size()),
                        text.data());
}

xcb_atom_t FakeWindow::atom(const char *name)
{
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr);
    const xcb_atom_t found = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return found;
}

} // namespace tally::test
