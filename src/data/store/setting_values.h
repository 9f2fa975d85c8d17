#pragma once

#include <QMap>
#include <QString>

#include <optional>

namespace tally::data {

class StoreConnection;

// Settings: texts by key. A stored empty text counts as a value.

std::optional<QString> get_setting(const StoreConnection &store, const QString &key);
QString setting_or(const StoreConnection &store, const QString &key, const QString &fallback);
void set_setting(const StoreConnection &store, const QString &key, const QString &value);
QMap<QString, QString> all_settings(const StoreConnection &store);

} // namespace tally::data
