#pragma once

#include "data/store/chain_records.h"
#include "data/store/trial_records.h"

#include <functional>
#include <optional>
#include <vector>

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

struct FortQuestion {
    double from = 0.0; ///< seconds since the Unix epoch, as `to`; both included
    double to = 0.0;
    int min_level = 0; ///< 0 for all
};

/// What all forts of a question dropped, also of those that the list has no room for.
struct FortLoot {
    std::vector<data::LootStat> rows; ///< what drops most often first
    int forts = 0;
};

/// What the store tells about forts. A part whose query failed is absent.
struct FortFigures {
    std::optional<std::vector<data::FortRow>> reports; ///< the newest 1000, the newest first
    std::optional<FortLoot> loot;
};

/// Asks one query after the other; never throws.
/// \param is_outdated asked between the queries: what it ends early is of no use
FortFigures fort_figures(const data::TallyDb &db, const FortQuestion &question,
                         const std::function<bool()> &is_outdated);

} // namespace tally::ui
