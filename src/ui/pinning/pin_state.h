#pragma once

#include "platform/host/game_windows.h"
#include "platform/host/host.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/pinning/pin_geometry.h"

#include <QList>
#include <QString>

#include <optional>

namespace tally::ui {

/// In what the two overlays differ.
struct PinPolicy {
    enum class Pixels { Logical, Physical };
    enum class WhenAway { Hide, Stay };           ///< the game is gone, minimised or behind others
    enum class FreePosition { Unpinned, Always }; ///< when a drag's end is stored as position

    settings::OverlayPlace keys;
    Pixels pixels;
    WhenAway when_away;
    FreePosition free_position_stored;
    PinPlace (*derive)(const OverlayBox &, const platform::WindowRect &);
    PinPoint (*position)(const PinPlace &, const OverlayBox &, const platform::WindowRect &);
};
extern const PinPolicy statistics_pin;
extern const PinPolicy honor_pin;

/// An overlay as it stands at the moment.
struct OverlayView {
    OverlayBox box;
    double pixel_ratio = 1.0; ///< of its screen
    PinPoint screen = {};     ///< where that begins
};

/// What an overlay is to do with itself.
struct PinStep {
    enum class Visibility { Keep, Show, Hide };
    Visibility visibility = Visibility::Keep;
    std::optional<PinPoint> move_to; ///< only where it doesn't stand yet
};

/// The pinning of one overlay: knows the rules and the settings, but no widget. The overlay asks,
/// shows, hides and moves.
class PinState {
public:
    /// Loads the settings. `host` and `settings` must outlive the state.
    PinState(platform::Host &host, const PinPolicy &policy, Settings &settings);

    bool pinned() const { return pinned_; }
    const settings::OverlayPlace &keys() const { return policy_.keys; }
    const PinPlace &place() const { return place_; }
    const QString &target_exe() const { return target_exe_; }
    PinPoint free_position() const { return free_position_; }

    /// To be called 20 times a second while pinned.
    PinStep tick(const OverlayView &overlay);

    /// Stores the flag. Turning off brings back what a tick has hidden. After turning on follow
    /// `windows_to_choose_from`, perhaps `choose_target`, and `anchor_here`.
    PinStep set_pinned(bool pinned);
    /// The windows among which the user must choose before anything can be pinned; empty if the
    /// choice is plain.
    QList<platform::GameWindowInfo> windows_to_choose_from();
    QList<platform::GameWindowInfo> game_windows() { return platform::find_game_windows(host_); }
    void choose_target(const QString &exe_path);
    /// Takes the overlay's present position as the place to keep, if the game can be found.
    void anchor_here(const OverlayView &overlay);

    void begin_drag() { dragging_ = true; }
    /// Stores where the overlay was dragged to.
    void end_drag(const OverlayView &overlay);
    /// From now on ticks do nothing.
    void begin_close() { closing_ = true; }

private:
    platform::WindowHandle find_target();
    platform::WindowLook look_at_game();
    platform::WindowRect game_rect(const platform::WindowLook &game,
                                   const OverlayView &overlay) const;
    bool is_in_front(const platform::WindowLook &game) const;
    void store_place(const OverlayBox &overlay, const platform::WindowRect &game);

    platform::Host &host_;
    const PinPolicy &policy_;
    Settings &settings_;
    std::uint32_t own_process_;
    bool pinned_ = false;
    PinPlace place_;
    PinPoint free_position_;
    QString target_exe_;
    platform::WindowHandle game_window_ = platform::no_window;
    bool dragging_ = false;
    bool closing_ = false;
    bool hidden_by_pin_ = false;
};

} // namespace tally::ui
