#pragma once

#include "settings/setting.h"

/// Every key of the settings table. The names are those of the keys.
namespace tally::settings {

/// Pixels beyond these are on no desktop.
inline constexpr int leftmost = -100'000;
inline constexpr int rightmost = 100'000;

/// Folder of the game's mail cache. The start of the program stores where it is by default.
inline constexpr Setting<QString> mailcache_dir{"mailcache_dir"};
/// Name of the colour theme: "dark" or "light" in any letter case.
inline constexpr Setting<QString> theme{"theme", "dark"};
/// Base64 of `QWidget::saveGeometry`.
inline constexpr Setting<QString> window_geometry_qt{"window_geometry_qt"};
inline constexpr Setting<bool> window_maximized{"window_maximized", false};
/// Whether the one-time notice was shown.
inline constexpr Setting<bool> field_fights_beta_notice_shown{"field_fights_beta_notice_shown",
                                                              false};

// The pages of field fights. Columns from left to right, each as "column:width" in pixels.
inline constexpr Setting<QString> field_fights_columns{"field_fights_columns"};
inline constexpr Setting<QString> field_rally_columns{"field_rally_columns"};
inline constexpr Setting<QString> field_garrison_columns{"field_garrison_columns"};
inline constexpr Setting<QString> field_favorites_columns{"field_favorites_columns"};
/// "WIDTHxHEIGHT" of the window of one attack, in logical pixels.
inline constexpr Setting<QString> field_details_size{"field_details_size"};

// The statistics overlay. Positions are in logical pixels, offsets in pixels from the anchor, a
// corner of the game's window: "tl", "tr", "bl" or "br".
inline constexpr Setting<bool> overlay_visible{"overlay_visible", false};
inline constexpr Setting<int> overlay_font_size{"overlay_font_size", 10}; ///< points
inline constexpr Setting<QString> overlay_mode{"overlay_mode", "full"};
inline constexpr Setting<bool> overlay_pinned{"overlay_pinned", false};
inline constexpr Setting<QString> overlay_pin_anchor{"overlay_pin_anchor", "tl"};
inline constexpr Setting<int> overlay_pin_off_x{"overlay_pin_off_x", 20, leftmost, rightmost};
inline constexpr Setting<int> overlay_pin_off_y{"overlay_pin_off_y", 80, leftmost, rightmost};
inline constexpr Setting<QString> overlay_pin_target_exe{"overlay_pin_target_exe"};
inline constexpr Setting<int> overlay_x{"overlay_x", 80, leftmost, rightmost};
inline constexpr Setting<int> overlay_y{"overlay_y", 80, leftmost, rightmost};
/// Whether the mouse reaches what lies below the overlay.
inline constexpr Setting<bool> overlay_click_through{"overlay_click_through", false};

// The honor tracker's overlay, likewise.
inline constexpr Setting<bool> honor_tracker_visible{"honor_tracker_visible", true};
inline constexpr Setting<int> honor_tracker_font_size{"honor_tracker_font_size", 10};
inline constexpr Setting<bool> honor_tracker_pinned{"honor_tracker_pinned", false};
inline constexpr Setting<QString> honor_tracker_pin_anchor{"honor_tracker_pin_anchor", "tl"};
inline constexpr Setting<int> honor_tracker_pin_off_x{"honor_tracker_pin_off_x", 20, leftmost,
                                                      rightmost};
inline constexpr Setting<int> honor_tracker_pin_off_y{"honor_tracker_pin_off_y", 80, leftmost,
                                                      rightmost};
inline constexpr Setting<QString> honor_tracker_pin_target_exe{"honor_tracker_pin_target_exe"};
inline constexpr Setting<int> honor_tracker_x{"honor_tracker_x", 200, leftmost, rightmost};
inline constexpr Setting<int> honor_tracker_y{"honor_tracker_y", 150, leftmost, rightmost};
inline constexpr Setting<bool> honor_tracker_click_through{"honor_tracker_click_through", false};
/// Executable of the game whose memory is read. The program never writes it.
inline constexpr Setting<QString> honor_tracker_target_exe{"honor_tracker_target_exe"};

// The barbarian keep. Acknowledgements name a kill by its time with three decimals.
inline constexpr Setting<int> keep_cooldown_hours{"keep_cooldown_hours", 68, 1};
/// Hours before readiness at which to warn: numbers between commas, blanks or semicolons.
inline constexpr Setting<QString> keep_notify_before_hours{"keep_notify_before_hours", "5,3,1"};
/// Only "0" turns it off.
inline constexpr Setting<bool> keep_notify_enabled{"keep_notify_enabled", true, true};
inline constexpr Setting<QString> keep_notify_ack_last_ts{"keep_notify_ack_last_ts"};
inline constexpr Setting<QString> keep_notify_ack_sent{"keep_notify_ack_sent"};
inline constexpr Setting<QString> keep_ready_overlay_ack_ts{"keep_ready_overlay_ack_ts"};

/// Whether the user was told once that the program goes on in the tray.
inline constexpr Setting<bool> tray_notice_shown{"tray_notice_shown", false};

/// An ISO 8601 time in UTC, and the version that it is about.
inline constexpr Setting<QString> update_snoozed_until{"update_snoozed_until"};
inline constexpr Setting<QString> update_snoozed_version{"update_snoozed_version"};

/// Where an overlay stands, one setting a thing: what both overlays share is told by this.
struct OverlayPlace {
    Setting<bool> pinned;
    Setting<QString> anchor;
    Setting<int> off_x;
    Setting<int> off_y;
    Setting<QString> target_exe;
    Setting<int> x;
    Setting<int> y;
};

inline constexpr OverlayPlace overlay_place{
    overlay_pinned,         overlay_pin_anchor, overlay_pin_off_x, overlay_pin_off_y,
    overlay_pin_target_exe, overlay_x,          overlay_y};
inline constexpr OverlayPlace honor_tracker_place{
    honor_tracker_pinned,    honor_tracker_pin_anchor,     honor_tracker_pin_off_x,
    honor_tracker_pin_off_y, honor_tracker_pin_target_exe, honor_tracker_x,
    honor_tracker_y};

} // namespace tally::settings
