#pragma once

#include <QString>

namespace tally::platform::Updater {

/// Where an update keeps the version that it replaces.
QString backup_path(const QString &temp_dir, const QString &old_version);

/// The newest backup of this user; empty if there is none.
QString newest_backup(const QString &temp_dir);

/// Removes all backups but the newest two.
void remove_old_backups(const QString &temp_dir);

} // namespace tally::platform::Updater
