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

/// How long a look holds where no change was told: some managers hide or move a frame without
/// telling the window in it.
constexpr std::chrono::seconds longest_trust{2};

/// X names windows with 29 bits; anything wider was never one of its handles.
xcb_window_t x_window(WindowHandle window)
{
    constexpr WindowHandle widest = std::numeric_limits<xcb_window_t>::max();
    return window <= widest ? static_cast<xcb_window_t>(window) : xcb_window_t{XCB_WINDOW_NONE};
}

std::uint32_t first_of(const std::vector<std::uint32_t> &numbers)
{
    return numbers.empty() ? 0 : numbers.front();
}

/// Whether a window manager runs. The lists on the root outlive a manager that crashed, so that the
/// window which it names, and which dies with it, must name itself.
bool names_itself(const std::vector<std::uint32_t> &manager,
                  const std::vector<std::uint32_t> &named_by_it)
{
    return !manager.empty() && named_by_it == manager;
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

/// Some events go to every client, asked for or not. All would pile up unread.
void X11Windows::take_events()
{
    while (const ReplyPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_)})
        ++changes_;
}

xcb_get_property_cookie_t X11Windows::ask(xcb_window_t window, Atom property)
{
    return xcb_get_property(connection_, 0, window, atoms_[property], XCB_GET_PROPERTY_TYPE_ANY, 0,
                            longest_property);
}

std::vector<std::uint32_t> X11Windows::answer_to(xcb_get_property_cookie_t asked)
{
    const ReplyPtr<xcb_get_property_reply_t> reply{
        xcb_get_property_reply(connection_, asked, nullptr)};
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

std::vector<std::uint32_t> X11Windows::numbers(xcb_window_t window, Atom property)
{
    return answer_to(ask(window, property));
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

bool X11Windows::managed()
{
    const std::vector<std::uint32_t> manager = numbers(root_, SupportingWmCheck);
    return names_itself(manager, numbers(first_of(manager), SupportingWmCheck));
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
    take_events();
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
    if (!connected())
        return false;
    const auto state = ask(x_window(window), NetWmState);
    return is_minimised(state, ask(x_window(window), WmState));
}

bool X11Windows::is_minimised(xcb_get_property_cookie_t state, xcb_get_property_cookie_t icon_state)
{
    const std::vector<std::uint32_t> states = answer_to(state);
    const std::vector<std::uint32_t> icon_states = answer_to(icon_state);
    return std::find(states.begin(), states.end(), atoms_[NetWmStateHidden]) != states.end() ||
           first_of(icon_states) == iconic_state;
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
    return first_of(numbers(x_window(window), NetWmPid));
}

WindowRect X11Windows::outer_rect(WindowHandle window)
{
    return connected() ? answer_to(ask_rect(x_window(window))) : WindowRect{};
}

X11Windows::RectQuestion X11Windows::ask_rect(xcb_window_t window)
{
    return {xcb_get_geometry(connection_, window),
            xcb_translate_coordinates(connection_, window, root_, 0, 0),
            ask(window, NetFrameExtents)};
}

WindowRect X11Windows::answer_to(const RectQuestion &asked)
{
    const ReplyPtr<xcb_get_geometry_reply_t> geometry{
        xcb_get_geometry_reply(connection_, asked.geometry, nullptr)};
    const ReplyPtr<xcb_translate_coordinates_reply_t> origin{
        xcb_translate_coordinates_reply(connection_, asked.origin, nullptr)};
    const std::vector<std::uint32_t> extents = answer_to(asked.frame);
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
    if (!connected())
        return no_window;
    return managed() ? first_of(numbers(root_, ActiveWindow)) : focused_top_level();
}

/// Who has the keyboard, where no window manager tells.
WindowHandle X11Windows::focused_top_level()
{
    const ReplyPtr<xcb_get_input_focus_reply_t> focus{
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr)};
    return focus ? top_level_of(focus->focus) : no_window;
}

WindowLook X11Windows::look_at(WindowHandle window)
{
    if (!connected())
        return {};
    if (window == no_window)
        return ask_all(window).look;
    take_events();
    const unsigned changes = changes_;
    const auto now = std::chrono::steady_clock::now();
    const std::lock_guard lock(looks_mutex_);
    const auto kept = std::find_if(looks_.begin(), looks_.end(), [window](const KeptLook &look) {
        return look.window == window;
    });
    std::uint32_t front_before = 0;
    if (kept == looks_.end()) {
        watch(window);
    } else {
        if (kept->changes == changes && now - kept->at < longest_trust)
            return kept->look;
        front_before = kept->look.foreground_process_id;
        looks_.erase(kept);
    }
    auto [look, is_managed] = ask_all(window);
    // Who has the focus where no manager runs is told to nobody.
    if (look.usable && is_managed)
        looks_.push_back({window, changes, now, look});
    // While the focus goes from one window to another, no window has it for a moment: that counts
    // from the next look on.
    if (look.foreground_process_id == 0)
        look.foreground_process_id = front_before;
    return look;
}

/// From now on the server tells of the window's changes, and of those of the root.
void X11Windows::watch(WindowHandle window)
{
    constexpr std::uint32_t root_events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    constexpr std::uint32_t events = root_events | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &root_events);
    xcb_change_window_attributes(connection_, x_window(window), XCB_CW_EVENT_MASK, &events);
}

/// Sends what it asks before it awaits the first answer: one question after the other would hold
/// the caller up a dozen times.
X11Windows::FullLook X11Windows::ask_all(WindowHandle handle)
{
    const xcb_window_t window = x_window(handle);
    const auto attributes_asked = xcb_get_window_attributes(connection_, window);
    const auto state = ask(window, NetWmState);
    const auto icon_state = ask(window, WmState);
    const RectQuestion rect = ask_rect(window);
    const auto process = ask(window, NetWmPid);
    const auto manager_asked = ask(root_, SupportingWmCheck);
    const auto active = ask(root_, ActiveWindow);
    const ReplyPtr<xcb_get_window_attributes_reply_t> attributes{
        xcb_get_window_attributes_reply(connection_, attributes_asked, nullptr)};
    const bool is_shown = !is_minimised(state, icon_state) && attributes &&
                          attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    const WindowRect outer = answer_to(rect);
    const std::uint32_t owner = first_of(answer_to(process));

    const std::vector<std::uint32_t> manager = answer_to(manager_asked);
    const auto check = ask(first_of(manager), SupportingWmCheck);
    const auto front_asked = ask(first_of(answer_to(active)), NetWmPid);
    const bool is_managed = names_itself(manager, answer_to(check));
    const std::uint32_t front = first_of(answer_to(front_asked));
    return {{is_shown, outer, owner, is_managed ? front : process_id(focused_top_level())},
            is_managed};
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
