#include "platform/updater/backups.h"

#include "platform/updater/install.h"
#include "platform/updater/update_log.h"

#include <QDir>

namespace tally::platform::Updater {
namespace {

/// Newest first. Others have folders of their own, which may bear such a name, in a place that all
/// share; what they let this user write is neither to be removed nor to be told of.
QFileInfoList backups_in(const QString &temp_dir)
{
    QFileInfoList backups = QDir(temp_dir).entryInfoList({QStringLiteral("tallyhand-backup-*")},
                                                         QDir::Dirs | QDir::NoSymLinks, QDir::Time);
    backups.removeIf([](const QFileInfo &backup) { return !is_own(backup); });
    return backups;
}

} // namespace

QString backup_path(const QString &temp_dir, const QString &old_version)
{
    return QDir(temp_dir).filePath(QStringLiteral("tallyhand-backup-%1").arg(old_version));
}

QString newest_backup(const QString &temp_dir)
{
    return backups_in(temp_dir).value(0).filePath();
}

void remove_old_backups(const QString &temp_dir)
{
    constexpr qsizetype kept = 2;
    for (const QFileInfo &old : backups_in(temp_dir).mid(kept)) {
        const bool is_gone = QDir(old.filePath()).removeRecursively();
        qCInfo(log_update).noquote()
            << (is_gone ? "removed the old backup" : "cannot remove all of") << old.filePath();
    }
}

} // namespace tally::platform::Updater
