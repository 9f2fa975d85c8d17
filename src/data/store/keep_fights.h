#pragma once

#include "data/store/trial_records.h"

#include <optional>
#include <vector>

namespace tally::data {

class StoreConnection;

// Fights against the boss of the barbarian keep; see the members of `TallyDb` of the same names.

std::optional<double> keep_player(const StoreConnection &store);
std::vector<KeepKill> keep_kills(const StoreConnection &store, double player_id, int limit);
std::optional<double> last_keep_kill(const StoreConnection &store, double player_id);

} // namespace tally::data
