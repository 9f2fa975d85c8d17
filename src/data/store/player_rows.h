#pragma once

#include "data/store/records.h"

#include <QVariantList>

#include <vector>

namespace tally::data {

class StoreConnection;

/// Accounts as `sql` selects them: id, name and number of mails, most of these first.
std::vector<PlayerRow> player_rows(const StoreConnection &store, const QString &sql,
                                   const QVariantList &params = {});

/// Adds those of other mails; they stay in their order.
void add_player_rows(std::vector<PlayerRow> &players, const std::vector<PlayerRow> &others);

} // namespace tally::data
