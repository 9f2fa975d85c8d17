#pragma once

#include "data/store/trial_records.h"

#include <functional>
#include <optional>
#include <vector>

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

/// The keep kills of the account that is followed.
struct KeepFigures {
    std::optional<double> player_id; ///< nothing while no account is known
    QString player_name;
    std::vector<data::KeepKill> kills; ///< the newest 1000, the newest first
};

/// \throws std::runtime_error of the store
KeepFigures keep_figures(const data::TallyDb &db);

} // namespace tally::ui
