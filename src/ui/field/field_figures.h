#pragma once

#include "data/store/change_stamp.h"
#include "data/store/field_records.h"
#include "ui/field/field_filter.h"
#include "ui/field/field_mode.h"
#include "ui/field/field_rows.h"
#include "ui/field/hero_names.h"
#include "ui/parts/player_entries.h"

#include <functional>
#include <optional>
#include <vector>

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

/// What the attacks on a page were read from: unchanged, the store has nothing else to tell.
struct FieldSource {
    data::ChangeStamp reports;
    FieldFilter filter;
    HeroNames heroes;
};

/// What is asked for, with the player who is chosen now: he stays if his account still exists.
struct FieldQuestion {
    FieldMode mode = FieldMode::Fields;
    FieldFilter filter;
    QString player_text;              ///< his entry; empty before the first choice
    std::optional<FieldSource> shown; ///< where the page's attacks are from
};

/// The newest attacks that fit a filter, and the tree that they make.
struct FieldAttacks {
    FieldSource source;
    std::vector<FieldAttack> attacks;
    std::vector<FieldRow> rows;
};

/// What the store tells about field fights.
struct FieldFigures {
    FieldFilter filter;               ///< as asked, with the chosen player
    std::vector<PlayerEntry> players; ///< "All players" alone if they could not be read
    std::size_t chosen_player = 0;
    data::FieldSummary summary;          ///< all zero if it could not be read
    std::optional<FieldAttacks> attacks; ///< absent if they are those shown, or their query failed
};

/// Asks one query after the other; never throws.
/// \param is_outdated asked between the queries: what it ends early is of no use
FieldFigures field_figures(const data::TallyDb &db, const FieldQuestion &question,
                           const std::function<bool()> &is_outdated);

} // namespace tally::ui
