#pragma once

#include "data/store/change_stamp.h"
#include "data/store/store_connection.h"

#include <atomic>
#include <optional>

namespace tally::data {

class ChainSlicer;

// The slices of chains (round_slicer.h, derived_schema.h). Whoever reads them takes a
// `SliceSnapshot`, which sees to it that they tell of all rounds.

/// Makes the derived tables and triggers anew if another program has changed them.
void look_after_derived_schema(const StoreConnection &store);

/// Whether the store's own slices tell of all rounds.
bool slices_complete(const StoreConnection &store);
int stale_chain_count(const StoreConnection &store);

/// Slices up to `chains` stale chains in one transaction; fails soon if another program holds the
/// store, for readers can do without. \return how many are left
int complete_chain_slices(const StoreConnection &store, int chains);

/// Marks the chains whose rows are not as many as their slices say: the triggers see all changes,
/// but whoever takes them away and puts them back is not seen.
void mark_miscounted_chains(const StoreConnection &store);

/// Writes the slices of the chain that was just stored. \param loot_rows of the whole chain
void store_slices(const StoreConnection &store, const ChainSlicer &slicer, int loot_rows);

ChangeStamp change_stamp(const StoreConnection &store);

/// One state of the store in which the tables `chain_slices` and `chain_slice_loot` tell of all
/// rounds. Stale chains are sliced first. Where that cannot be written (a read-only or full disk,
/// another program that holds the store), this connection gets tables of the same names of its own,
/// in memory, that hide the store's: whatever reads slices reads them as it reads the others.
class SliceSnapshot {
public:
    explicit SliceSnapshot(const StoreConnection &store);

    bool is_of_commits() const { return snapshot_->is_of_commits(); }

private:
    std::optional<ReadSnapshot> snapshot_;
};

} // namespace tally::data
