#pragma once

#include <QString>
#include <QStringList>

namespace tally::data {

class StoreConnection;

// What the store derives from its reports, kept right by triggers on their tables, so by every
// program that writes them:
// - `chain_slices` and `chain_slice_loot`: the rounds of chains, added up (round_slicer.h)
// - `stale_chains`: the chains whose slices were deleted because one of their rows has changed
// - `report_changes`: a count of changes, for results that are remembered, and one of the slices
// that
//   were removed, for those that only grow

/// Whether all of it is there as this build makes it.
bool has_derived_schema(const StoreConnection &store);

/// Makes anew what is not as this build makes it; all chains are stale then, unless it was only an
/// index or the counting of the reports of other kinds. To be called in a write transaction.
void make_derived_schema(const StoreConnection &store);

/// The statements that make the slices' tables, with their indexes, in the database `schema`.
QStringList slice_tables_in(const QString &schema);

} // namespace tally::data
