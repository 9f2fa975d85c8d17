#pragma once

#include <QString>

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

/// Settings as a window needs them: a store that fails costs the setting and a line in the log, and
/// nothing more.

QString stored_setting(const data::TallyDb &db, const QString &key, const QString &fallback);
bool stored_flag(const data::TallyDb &db, const QString &key, bool fallback);
void store_setting(data::TallyDb &db, const QString &key, const QString &value);
void store_flag(data::TallyDb &db, const QString &key, bool value);

} // namespace tally::ui
