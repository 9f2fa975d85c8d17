#pragma once

namespace tally::data {

class StoreConnection;

/// Keeps a copy of the store beside it, and of older copies the newest.
/// \throws std::runtime_error if it cannot
void back_up(const StoreConnection &store, double now);

} // namespace tally::data
