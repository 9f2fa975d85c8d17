#include "data/store/setting_values.h"

#include "data/store/store_connection.h"

#include "data/store/sql_values.h"

#include <QMutexLocker>

namespace tally::data {

std::optional<QString> get_setting(const StoreConnection &store, const QString &key)
{
    auto row = store.exec(QStringLiteral("SELECT value FROM settings WHERE key = ?"), {key});
    return row.next() ? std::optional(row.value(0).toString()) : std::nullopt;
}

QString setting_or(const StoreConnection &store, const QString &key, const QString &fallback)
{
    return get_setting(store, key).value_or(fallback);
}

void set_setting(const StoreConnection &store, const QString &key, const QString &value)
{
    const QMutexLocker lock(&store.write_mutex());
    store.exec(QStringLiteral("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)"),
               {key, not_null(value)});
}

QMap<QString, QString> all_settings(const StoreConnection &store)
{
    QMap<QString, QString> settings;
    auto rows = store.exec(QStringLiteral("SELECT key, value FROM settings"));
    while (rows.next())
        settings.insert(rows.value(0).toString(), rows.value(1).toString());
    return settings;
}

} // namespace tally::data
