#pragma once

namespace tally::data {

class StoreConnection;

/// See `TallyDb::init_schema`. \param now the time, for the name of a backup
bool init_schema(const StoreConnection &store, double now);

} // namespace tally::data
