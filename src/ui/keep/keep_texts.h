#pragma once

#include "data/store/trial_records.h"
#include "ui/items/item_rows.h"

#include <QString>

namespace tally::ui {

/// The texts of the page of the barbarian keep. Times read as on the user's clock.

/// "Ready in 1h 5min", or "Ready!" when no second is left.
QString countdown_text(double seconds);

/// The band over the page: its text and its style sheet.
struct KeepBand {
    QString text;
    QString style;

    bool operator==(const KeepBand &) const = default;
};
/// Before the first countdown has come.
KeepBand loading_band();
KeepBand keep_band(double seconds, bool is_ready);

ItemRow keep_kill_row(const data::KeepKill &kill);
/// What is said of one kill above its participants, as rich text.
QString keep_kill_headline(const data::TrialDetail &detail);

/// Whose kills the page shows.
QString keep_player_text(const QString &name, double player_id, std::size_t kills);

} // namespace tally::ui
