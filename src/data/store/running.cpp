#include "data/store/running.h"

namespace tally::data {

std::optional<SlicesSeen> slices_seen(const StoreConnection &store)
{
    if (!slices_complete(store))
        return std::nullopt;
    auto statement = store.kept(QStringLiteral(
        "SELECT schema_version, (SELECT slices_removed FROM main.report_changes), "
        "(SELECT IFNULL(MAX(id), 0) FROM main.chain_slices) FROM pragma_schema_version"));
    QSqlQuery &row = statement.exec({});
    row.next();
    return SlicesSeen{row.value(0).toLongLong(), row.value(1).toLongLong(),
                      row.value(2).toLongLong()};
}

} // namespace tally::data
