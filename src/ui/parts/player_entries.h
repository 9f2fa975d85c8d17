#pragma once

#include "data/store/records.h"

#include <QString>

#include <optional>
#include <vector>

namespace tally::ui {

/// One entry in a choice of accounts.
struct PlayerEntry {
    QString text;
    std::optional<double> id; ///< nothing for all accounts

    bool operator==(const PlayerEntry &) const = default;
};

/// "All players", then the accounts in their order. No two entries have the same text.
std::vector<PlayerEntry> player_entries(const std::vector<data::PlayerRow> &accounts);

/// The index of the entry whose text was chosen before, or else of the first account, if there is
/// one. Of two accounts with the same name, the one that was chosen stays chosen.
/// \param chosen without a text if none was
std::size_t chosen_player(const std::vector<PlayerEntry> &entries, const PlayerEntry &chosen);

} // namespace tally::ui
