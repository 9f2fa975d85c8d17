#include "app/gui/rollback_marker.h"

#include "platform/log/process_log.h"
#include "platform/paths/data_folders.h"

#include <QDir>
#include <QFile>
#include <QTimer>

namespace tally::app {

QString rollback_marker_path()
{
    return QDir(platform::data_dir()).filePath(QStringLiteral("updates/rollback-pending.txt"));
}

void clear_rollback_marker_when_healthy(const QString &marker, QObject *context,
                                        std::chrono::milliseconds uptime)
{
    if (!QFile::exists(marker))
        return;
    QTimer::singleShot(uptime, context, [marker] {
        QFile::remove(marker);
        platform::ProcessLog::line(
            QStringLiteral("[main] cleared rollback-pending (60 s uptime healthy)"));
    });
}

} // namespace tally::app
