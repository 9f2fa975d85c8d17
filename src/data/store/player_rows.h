#pragma once

#include "data/store/records.h"

#include <vector>

namespace tally::data {

class StoreConnection;

/// The accounts of a table with a row for each mail or part of one; those with the most mails, told
/// apart by the expression `mail`, first.
std::vector<PlayerRow> player_rows(const StoreConnection &store, const QString &table,
                                   const QString &mail);

} // namespace tally::data
