#pragma once

#include "data/store/chain_records.h"
#include "data/store/trial_records.h"
#include "ui/items/item_rows.h"

#include <QString>

#include <vector>

namespace tally::ui {

/// The texts of the page of boss runs. Times read as on the user's clock.

/// "2026-01-05  20:10–21:30", or two full times where the session crosses midnight.
QString session_time_text(const data::TrialSession &session);

/// The two lines of a card with the sum of one item.
struct LootCardTexts {
    QString name;
    QString amount;

    bool operator==(const LootCardTexts &) const = default;
};
LootCardTexts loot_card_texts(const data::LootStat &stat);

/// Gems first, then speedups, chests, action points and keys, the larger number of pieces first
/// among equals; only items of which there is a piece.
std::vector<data::LootStat> loot_card_order(std::vector<data::LootStat> stats);

/// Times, bosses and kills; the key is that of the session's first kill.
ItemRow session_row(const data::TrialSession &session);
ItemRow player_row(const data::SessionPlayer &player);
ItemRow kill_row(const data::PlayerKill &kill);

QString players_caption(const data::TrialSession &session, std::size_t players);

} // namespace tally::ui
