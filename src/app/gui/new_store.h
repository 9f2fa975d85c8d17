#pragma once

#include <QMap>
#include <QString>

#include <optional>

namespace tally::data {
class TallyDb;
}

namespace tally::app {

using SettingsTable = QMap<QString, QString>; ///< texts by key

/// The settings of a store whose file is gone, from the connections that still have it open.
/// \return nothing while the file is in its place, or if they cannot be read
std::optional<SettingsTable> settings_of_lost_store(const data::TallyDb &db);

/// Makes a new store with the settings of a lost one, unless a file lies in its place again. To be
/// called when the lost one is closed. A failure is logged: the next start then makes the store.
void make_new_store(const QString &path, const SettingsTable &settings);

/// Starts the program once more. It waits for the end of this one.
void restart_program();

} // namespace tally::app
