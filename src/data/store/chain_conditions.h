#pragma once

#include "data/store/chain_records.h"

namespace tally::data {

/// What `TallyDb::chain_filter` gives: conditions on time, account, forts and action points, to be
/// appended to a WHERE clause. `prefix` stands before the columns: "r." or "".
ChainSqlFilter chain_filter(const QString &prefix, const ChainQuestion &question);

/// A whole WHERE clause: the same and the condition on the base type.
ChainSqlFilter question_conditions(const QString &prefix, const ChainQuestion &question);

/// Those on base type, time and account alone.
ChainSqlFilter span_conditions(const ChainQuestion &question);

} // namespace tally::data
