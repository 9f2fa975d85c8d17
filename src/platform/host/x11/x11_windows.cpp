#include "platform/host/x11/x11_windows.h"

#include <QString>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>

namespace tally::platform {

namespace {

struct FreeDeleter {
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, FreeDeleter>;

constexpr std::uint32_t longest_property = 1U << 16; // in units of four bytes
constexpr std::uint32_t iconic_state = 3;            // of WM_STATE
constexpr int deepest_window_tree = 64;

/// X names windows with 29 bits; anything wider was never one of its handles.
xcb_window_t x_window(WindowHandle window)
{
    constexpr WindowHandle widest = std::numeric_limits<xcb_window_t>::max();
    return window <= widest ? static_cast<xcb_window_t>(window) : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace

X11Windows::X11Windows(std::string display) : display_(std::move(display)) {}

X11Windows::~X11Windows()
{
    if (connection_ != nullptr)
        xcb_disconnect(connection_);
}

bool X11Windows::connected()
{
    std::call_once(connect_once_, [this] { connect(); });
    return root_ != XCB_WINDOW_NONE && xcb_connection_has_error(connection_) == 0;
}

void X11Windows::connect()
{
    constexpr std::array<const char *, AtomCount> names = {"_NET_CLIENT_LIST_STACKING",
                                                           "_NET_SUPPORTING_WM_CHECK",
                                                           "_NET_ACTIVE_WINDOW",
                                                           "_NET_WM_NAME",
                                                           "_NET_WM_PID",
                                                           "_NET_WM_STATE",
                                                           "_NET_WM_STATE_HIDDEN",
                                                           "_NET_FRAME_EXTENTS",
                                                           "WM_STATE",
                                                           "UTF8_STRING"};

    int screen_number = 0;
    connection_ = xcb_connect(display_.empty() ? nullptr : display_.c_str(), &screen_number);
    if (xcb_connection_has_error(connection_) != 0)
        return;
    std::array<xcb_intern_atom_cookie_t, AtomCount> cookies{};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto length = static_cast<std::uint16_t>(std::strlen(names[i]));
        cookies[i] = xcb_intern_atom(connection_, 0, length, names[i]);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const ReplyPtr<xcb_intern_atom_reply_t> reply{
            xcb_intern_atom_reply(connection_, cookies[i], nullptr)};
        atoms_[i] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (int i = 0; i < screen_number && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    if (screens.rem > 0)
        root_ = screens.data->root;
}

/// Some go to every client, asked for or not, and would pile up unread.
void X11Windows::drop_events()
{
    while (const ReplyPtr<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_)}) {
    }
}

xcb_get_property_cookie_t X11Windows::ask(xcb_window_t window, Atom property)
{
    return xcb_get_property(connection_, 0, window, atoms_[property], XCB_GET_PROPERTY_TYPE_ANY, 0,
                            longest_property);
}

std::vector<std::uint32_t> X11Windows::numbers(xcb_get_property_cookie_t question)
{
    const ReplyPtr<xcb_get_property_reply_t> reply{
        xcb_get_property_reply(connection_, question, nullptr)};
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

/// Or 0.
std::uint32_t X11Windows::first_number(xcb_get_property_cookie_t question)
{
    const std::vector<std::uint32_t> all = numbers(question);
    return all.empty() ? 0 : all.front();
}

std::vector<std::uint32_t> X11Windows::numbers(xcb_window_t window, Atom property)
{
    return numbers(ask(window, property));
}

std::optional<std::string> X11Windows::bytes(xcb_window_t window, xcb_atom_t property,
                                             xcb_atom_t type)
{
    const ReplyPtr<xcb_get_property_reply_t> reply{xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, property, type, 0, longest_property),
        nullptr)};
    if (!reply || reply->format != 8)
        return std::nullopt;
    const auto *first = static_cast<const char *>(xcb_get_property_value(reply.get()));
    return std::string{first, first + reply->value_len};
}

/// Whether a window manager runs. The lists on the root outlive a manager that crashed, so that
/// the window which it names, and which dies with it, must name itself.
bool X11Windows::managed()
{
    const std::vector<std::uint32_t> check = numbers(root_, SupportingWmCheck);
    return !check.empty() && numbers(check.front(), SupportingWmCheck) == check;
}

std::vector<xcb_window_t> X11Windows::children_of_root()
{
    const ReplyPtr<xcb_query_tree_reply_t> reply{
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr)};
    if (!reply)
        return {};
    const xcb_window_t *first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

std::vector<WindowHandle> X11Windows::top_level()
{
    if (!connected())
        return {};
    drop_events();
    std::vector<xcb_window_t> bottom_first;
    if (managed())
        bottom_first = numbers(root_, ClientListStacking);
    if (bottom_first.empty())
        bottom_first = children_of_root();
    return {bottom_first.rbegin(), bottom_first.rend()};
}

bool X11Windows::exists(WindowHandle window)
{
    if (!connected())
        return false;
    const ReplyPtr<xcb_get_window_attributes_reply_t> reply{xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, x_window(window)), nullptr)};
    return reply != nullptr;
}

bool X11Windows::visible(WindowHandle window)
{
    if (!connected())
        return false;
    const ReplyPtr<xcb_get_window_attributes_reply_t> reply{xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, x_window(window)), nullptr)};
    return reply && (reply->map_state == XCB_MAP_STATE_VIEWABLE || minimised(window));
}

bool X11Windows::minimised(WindowHandle window)
{
    return connected() && is_iconic(ask_state(x_window(window)));
}

X11Windows::StateQuestion X11Windows::ask_state(xcb_window_t client)
{
    return {ask(client, NetWmState), ask(client, WmState)};
}

bool X11Windows::is_iconic(const StateQuestion &question)
{
    const std::vector<std::uint32_t> states = numbers(question.net_state);
    const bool is_hidden =
        std::find(states.begin(), states.end(), atoms_[NetWmStateHidden]) != states.end();
    return first_number(question.wm_state) == iconic_state || is_hidden;
}

std::u16string X11Windows::title(WindowHandle window)
{
    if (!connected())
        return {};
    if (const auto text = bytes(x_window(window), atoms_[NetWmName], atoms_[Utf8String]))
        return QString::fromStdString(*text).toStdU16String();
    const auto text = bytes(x_window(window), XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY);
    return text ? QString::fromLatin1(*text).toStdU16String() : std::u16string{};
}

std::uint32_t X11Windows::process_id(WindowHandle window)
{
    if (window == no_window || !connected())
        return 0;
    return first_number(ask(x_window(window), NetWmPid));
}

WindowRect X11Windows::outer_rect(WindowHandle window)
{
    return connected() ? rect_of(ask_rect(x_window(window))) : WindowRect{};
}

X11Windows::RectQuestion X11Windows::ask_rect(xcb_window_t client)
{
    return {xcb_get_geometry(connection_, client),
            xcb_translate_coordinates(connection_, client, root_, 0, 0),
            ask(client, NetFrameExtents)};
}

WindowRect X11Windows::rect_of(const RectQuestion &question)
{
    const ReplyPtr<xcb_get_geometry_reply_t> geometry{
        xcb_get_geometry_reply(connection_, question.geometry, nullptr)};
    const ReplyPtr<xcb_translate_coordinates_reply_t> origin{
        xcb_translate_coordinates_reply(connection_, question.origin, nullptr)};
    const std::vector<std::uint32_t> extents = numbers(question.extents);
    if (!geometry || !origin)
        return {};
    std::array<int, 4> frame{}; // left, right, top, bottom
    if (extents.size() == frame.size()) {
        std::transform(extents.begin(), extents.end(), frame.begin(), [](std::uint32_t extent) {
            return static_cast<int>(std::min<std::uint32_t>(extent, 0x7FFF));
        });
    }
    const int border = geometry->border_width;
    const WindowRect rect{origin->dst_x - border - frame[0], origin->dst_y - border - frame[2],
                          geometry->width + 2 * border + frame[0] + frame[1],
                          geometry->height + 2 * border + frame[2] + frame[3]};
    return {rect.x, rect.y, rect.w, rect.h, rect.w > 0 && rect.h > 0};
}

WindowHandle X11Windows::foreground()
{
    return connected() ? foreground_of(ask_foreground()) : no_window;
}

X11Windows::ForegroundQuestion X11Windows::ask_foreground()
{
    const xcb_window_t manager = manager_;
    return {manager, ask(root_, SupportingWmCheck), ask(manager, SupportingWmCheck),
            ask(root_, ActiveWindow)};
}

WindowHandle X11Windows::foreground_of(const ForegroundQuestion &question)
{
    const xcb_window_t manager = first_number(question.check);
    xcb_window_t named = first_number(question.check_of_manager);
    const std::uint32_t active = first_number(question.active);
    if (manager != question.manager) {
        manager_ = manager;
        named = first_number(ask(manager, SupportingWmCheck));
    }
    if (manager != XCB_WINDOW_NONE && named == manager) // as in `managed`
        return active;
    const ReplyPtr<xcb_get_input_focus_reply_t> focus{
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr)};
    return focus ? top_level_of(focus->focus) : no_window;
}

WindowLook X11Windows::look_at(WindowHandle window)
{
    if (!connected())
        return {};
    drop_events();
    const xcb_window_t client = x_window(window);
    const ForegroundQuestion foreground = ask_foreground();
    if (window == no_window)
        return {.rect = {}, .foreground = foreground_of(foreground)};
    const auto attributes = xcb_get_window_attributes(connection_, client);
    const StateQuestion state = ask_state(client);
    const RectQuestion rect = ask_rect(client);
    const auto pid = ask(client, NetWmPid);
    const ReplyPtr<xcb_get_window_attributes_reply_t> reply{
        xcb_get_window_attributes_reply(connection_, attributes, nullptr)};
    const bool is_shown = reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    return {.usable = !is_iconic(state) && is_shown,
            .rect = rect_of(rect),
            .process_id = first_number(pid),
            .foreground = foreground_of(foreground)};
}

/// The ancestor that is a child of the root; toolkits often focus a window within.
xcb_window_t X11Windows::top_level_of(xcb_window_t window)
{
    for (int i = 0; i < deepest_window_tree; ++i) {
        const ReplyPtr<xcb_query_tree_reply_t> tree{
            xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr)};
        if (!tree || tree->parent == XCB_WINDOW_NONE) // gone, no window at all, or the root
            return XCB_WINDOW_NONE;
        if (tree->parent == root_)
            return window;
        window = tree->parent;
    }
    return XCB_WINDOW_NONE;
}

} // namespace tally::platform
