#include "data/store/honor_log.h"

#include "data/store/sql_values.h"
#include "data/store/store_connection.h"

#include <QMutexLocker>

namespace tally::data {

void log_honor_summary(const StoreConnection &store, const HonorLogEntry &entry)
{
    const QMutexLocker lock(&store.write_mutex());
    store.exec(QStringLiteral(R"sql(
        INSERT INTO honor_summary_log
          (log_time, base_timestamp, base_honor,
           new_timestamp, new_honor, delta_reports, estimated, discrepancy)
        VALUES (?, ?, ?, ?, ?, ?, ?, ?))sql"),
               {entry.log_time, nullable(entry.base_timestamp), nullable(entry.base_honor),
                nullable(entry.new_timestamp), nullable(entry.new_honor),
                nullable(entry.delta_reports), nullable(entry.estimated),
                nullable(entry.discrepancy)});
}

std::vector<HonorLogRow> recent_honor_log(const StoreConnection &store, int limit)
{
    std::vector<HonorLogRow> log;
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT log_time, base_honor, new_honor, delta_reports, estimated, discrepancy
        FROM honor_summary_log
        ORDER BY log_time DESC
        LIMIT ?)sql"),
                           {limit});
    while (rows.next())
        log.push_back({rows.value(0).toDouble(), int_in(rows.value(1)), int_in(rows.value(2)),
                       int_in(rows.value(3)), int_in(rows.value(4)), int_in(rows.value(5))});
    return log;
}

} // namespace tally::data
