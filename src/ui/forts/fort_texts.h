#pragma once

#include "data/store/trial_records.h"
#include "ui/items/item_rows.h"

#include <QString>

#include <optional>

namespace tally::ui {

/// The texts of the page of fort rallies. Times read as on the user's clock.

ItemRow fort_row(const data::FortRow &fort);
QString reports_caption(std::size_t reports);

/// What the fort report itself says, as rich text.
QString fort_headline(const data::FortRow &fort);
/// Who fought the battle behind it, as rich text; without a battle why there is none.
QString battle_headline(const std::optional<data::FortBattle> &battle);
ItemRow battle_round_row(const data::FortBattleRound &round);

} // namespace tally::ui
