#include "data/store/tally_db.h"

#include "data/store/sql_values.h"

#include <QMutexLocker>

namespace tally::data {

std::optional<QString> TallyDb::get_setting(const QString &key) const
{
    auto row = exec_prepared(connection(),
                             QStringLiteral("SELECT value FROM settings WHERE key = ?"), {key});
    return row.next() ? std::optional(row.value(0).toString()) : std::nullopt;
}

QString TallyDb::setting_or(const QString &key, const QString &fallback) const
{
    return get_setting(key).value_or(fallback);
}

void TallyDb::set_setting(const QString &key, const QString &value)
{
    const QMutexLocker lock(&write_mutex_);
    exec_prepared(connection(),
                  QStringLiteral("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)"),
                  {key, not_null(value)});
}

QMap<QString, QString> TallyDb::all_settings() const
{
    QMap<QString, QString> settings;
    auto rows = exec_prepared(connection(), QStringLiteral("SELECT key, value FROM settings"));
    while (rows.next())
        settings.insert(rows.value(0).toString(), rows.value(1).toString());
    return settings;
}

void TallyDb::set_field_favorite(const QString &file_name, bool favorite)
{
    const QMutexLocker lock(&write_mutex_);
    exec_prepared(connection(),
                  QStringLiteral("UPDATE field_reports SET email_box=? WHERE file_name=?"),
                  {favorite ? QStringLiteral("Archive") : QStringLiteral("Inbox"), file_name});
}

bool TallyDb::is_field_favorite(const QString &file_name) const
{
    return any_row(QStringLiteral("SELECT 1 FROM field_reports "
                                  "WHERE file_name=? AND email_box='Archive' LIMIT 1"),
                   {file_name});
}

void TallyDb::log_honor_summary(std::optional<double> base_timestamp, std::optional<int> base_honor,
                                std::optional<double> new_timestamp, std::optional<int> new_honor,
                                std::optional<int> delta_reports, std::optional<int> estimated,
                                std::optional<int> discrepancy)
{
    const QMutexLocker lock(&write_mutex_);
    exec_prepared(connection(), QStringLiteral(R"sql(
        INSERT INTO honor_summary_log
          (log_time, base_timestamp, base_honor,
           new_timestamp, new_honor, delta_reports, estimated, discrepancy)
        VALUES (?, ?, ?, ?, ?, ?, ?, ?))sql"),
                  {clock_(), nullable(base_timestamp), nullable(base_honor),
                   nullable(new_timestamp), nullable(new_honor), nullable(delta_reports),
                   nullable(estimated), nullable(discrepancy)});
}

std::vector<HonorLogRow> TallyDb::recent_honor_log(int limit) const
{
    std::vector<HonorLogRow> log;
    auto rows = exec_prepared(connection(), QStringLiteral(R"sql(
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
