#pragma once

namespace tally::data {

class StoreConnection;

// What `init_schema` does with a store of an earlier build, in this order around its own script.

/// Drops tables whose shape is too old, after a copy of the store was kept.
/// \return whether it did
bool migrate_structure(const StoreConnection &store, double now);
void add_missing_columns(const StoreConnection &store);
/// Those on columns that were added.
void create_late_indexes(const StoreConnection &store);
void backfill_fort_flags(const StoreConnection &store);

/// Lets the planner know how large the tables are; a failure costs speed only.
void refresh_statistics(const StoreConnection &store);

} // namespace tally::data
