#include "ui/pinning/pin_state.h"

#include <utility>

namespace tally::ui {

using platform::WindowHandle;
using platform::WindowRect;

const PinPolicy statistics_pin{settings::overlay_place,   PinPolicy::Pixels::Logical,
                               PinPolicy::WhenAway::Hide, PinPolicy::FreePosition::Unpinned,
                               place_by_centre,           position_inside};

const PinPolicy honor_pin{settings::honor_tracker_place, PinPolicy::Pixels::Physical,
                          PinPolicy::WhenAway::Stay,     PinPolicy::FreePosition::Always,
                          place_by_nearest_corner,       position_from_corner};

PinState::PinState(platform::Host &host, const PinPolicy &policy, Settings &settings)
    : host_(host), policy_(policy), settings_(settings), own_process_(host.own_process_id()),
      pinned_(settings.get(policy.keys.pinned)), place_{anchor_of_text(
                                                            settings.get(policy.keys.anchor)),
                                                        settings.get(policy.keys.off_x),
                                                        settings.get(policy.keys.off_y)},
      free_position_{settings.get(policy.keys.x), settings.get(policy.keys.y)},
      target_exe_(settings.get(policy.keys.target_exe))
{}

WindowHandle PinState::find_target()
{
    const auto windows = game_windows();
    const platform::GameWindowInfo *found = platform::pick_game_window(windows, target_exe_);
    return found != nullptr ? found->hwnd : platform::no_window;
}

/// Searches only where the window that was followed can't be any more.
platform::WindowLook PinState::look_at_game()
{
    const platform::WindowLook look = host_.look_at(game_window_);
    if (look.usable)
        return look;
    game_window_ = find_target();
    return host_.look_at(game_window_);
}

/// The window's rectangle in the pixels of the policy.
WindowRect PinState::game_rect(const platform::WindowLook &game, const OverlayView &overlay) const
{
    return policy_.pixels == PinPolicy::Pixels::Logical
               ? in_logical_pixels(game.rect, overlay.pixel_ratio, overlay.screen)
               : game.rect;
}

/// A dialog of this program in front leaves the overlay where it is, too.
bool PinState::is_in_front(const platform::WindowLook &game) const
{
    const std::uint32_t front = game.foreground_process_id;
    return front == own_process_ || (game.process_id != 0 && game.process_id == front);
}

PinStep PinState::tick(const OverlayView &overlay)
{
    if (closing_ || !pinned_ || dragging_)
        return {};
    const platform::WindowLook look = look_at_game();
    const bool hides = policy_.when_away == PinPolicy::WhenAway::Hide;
    const WindowRect game = look.usable || !hides ? game_rect(look, overlay) : WindowRect{};
    PinStep step;
    if (hides && (!game.valid || !is_in_front(look))) {
        if (!std::exchange(hidden_by_pin_, true))
            step.visibility = PinStep::Visibility::Hide;
        return step;
    }
    if (!game.valid)
        return step;
    if (std::exchange(hidden_by_pin_, false))
        step.visibility = PinStep::Visibility::Show;
    const PinPoint wanted = policy_.position(place_, overlay.box, game);
    if (wanted.x != overlay.box.x || wanted.y != overlay.box.y)
        step.move_to = wanted;
    return step;
}

PinStep PinState::set_pinned(bool pinned)
{
    pinned_ = pinned;
    settings_.set(policy_.keys.pinned, pinned);
    PinStep step;
    if (!pinned && std::exchange(hidden_by_pin_, false))
        step.visibility = PinStep::Visibility::Show;
    return step;
}

QList<platform::GameWindowInfo> PinState::windows_to_choose_from()
{
    if (!target_exe_.isEmpty())
        return {};
    const auto windows = game_windows();
    return windows.size() > 1 ? windows : QList<platform::GameWindowInfo>{};
}

void PinState::choose_target(const QString &exe_path)
{
    target_exe_ = exe_path;
    settings_.set(policy_.keys.target_exe, exe_path);
    game_window_ = platform::no_window; // the next tick finds the target anew
}

void PinState::anchor_here(const OverlayView &overlay)
{
    game_window_ = find_target();
    const platform::WindowLook look = host_.look_at(game_window_);
    const WindowRect game = game_rect(look, overlay);
    if (look.usable && game.valid)
        store_place(overlay.box, game);
}

void PinState::end_drag(const OverlayView &overlay)
{
    dragging_ = false;
    if (!pinned_ || policy_.free_position_stored == PinPolicy::FreePosition::Always) {
        free_position_ = {overlay.box.x, overlay.box.y};
        settings_.set(policy_.keys.x, free_position_.x);
        settings_.set(policy_.keys.y, free_position_.y);
    }
    if (!pinned_)
        return;
    const bool needs_usable = policy_.when_away == PinPolicy::WhenAway::Hide;
    const platform::WindowLook look = look_at_game(); // the game may have come since the last tick
    const WindowRect game = game_rect(look, overlay);
    if (game.valid && (look.usable || !needs_usable))
        store_place(overlay.box, game);
}

void PinState::store_place(const OverlayBox &overlay, const WindowRect &game)
{
    place_ = policy_.derive(overlay, game);
    settings_.set(policy_.keys.off_x, place_.off_x);
    settings_.set(policy_.keys.off_y, place_.off_y);
    settings_.set(policy_.keys.anchor, anchor_text(place_.anchor));
}

} // namespace tally::ui
