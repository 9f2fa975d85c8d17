#pragma once

#include "data/store/records.h"

#include <QVariantList>

#include <vector>

namespace tally::data {

class StoreConnection;

/// The accounts of a table with a row for each mail or part of one; those with the most mails, told
/// apart by the expression `mail`, first.
/// \param condition " AND ..." with its parameters, or empty
std::vector<PlayerRow> player_rows(const StoreConnection &store, const QString &table,
                                   const QString &mail, const QString &condition = {},
                                   const QVariantList &params = {});

/// Adds those of other mails; they stay in their order.
void add_player_rows(std::vector<PlayerRow> &players, const std::vector<PlayerRow> &others);

} // namespace tally::data
