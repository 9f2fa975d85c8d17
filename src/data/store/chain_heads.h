#pragma once

#include "data/store/chain_records.h"

#include <vector>

namespace tally::data {

class StoreConnection;

/// The chains of a pair without their rounds, read from their slices, the newest first.
std::vector<ChainHead> chain_heads_for_pair(const StoreConnection &store, int hero_1, int hero_2,
                                            const ChainQuestion &question);

} // namespace tally::data
