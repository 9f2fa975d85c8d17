#pragma once

#include <QDir>
#include <QString>

#include <chrono>

class QObject;

namespace tally::app {

/// How long a fresh update must run to count as healthy.
inline constexpr std::chrono::milliseconds healthy_uptime{60'000};

/// Where an update leaves the marker that the start of the new version finds.
QString rollback_marker_path();

/// If the marker is there now, removes it, and with it all backups of former versions but the
/// newest two, after `uptime`, unless `context` is gone by then.
/// \param backups where those lie
void clear_rollback_marker_when_healthy(const QString &marker, QObject *context,
                                        std::chrono::milliseconds uptime = healthy_uptime,
                                        const QString &backups = QDir::tempPath());

} // namespace tally::app
