#include "app/gui/rollback_marker.h"

#include "platform/log/process_log.h"
#include "platform/paths/data_folders.h"
#include "platform/updater/backups.h"
#include "platform/updater/rollback_notes.h"

#include <QDir>
#include <QFile>
#include <QThreadPool>
#include <QTimer>

namespace tally::app {

QString rollback_marker_path()
{
    return QDir(platform::data_dir()).filePath(QStringLiteral("updates/rollback-pending.txt"));
}

void clear_rollback_marker_when_healthy(const QString &marker, QObject *context,
                                        std::chrono::milliseconds uptime, const QString &backups)
{
    if (!QFile::exists(marker))
        return;
    QTimer::singleShot(uptime, context, [marker, backups] {
        platform::Updater::remove_marker(marker);
        platform::ProcessLog::line(
            QStringLiteral("[main] cleared rollback-pending (60 s uptime healthy)"));
        // It may take a while, and the window must not stop for it.
        QThreadPool::globalInstance()->start(
            [backups] { platform::Updater::remove_old_backups(backups); });
    });
}

} // namespace tally::app
