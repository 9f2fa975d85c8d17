#pragma once

#include <QString>

#include <chrono>

class QObject;

namespace tally::app {

/// How long a fresh update must run to count as healthy.
inline constexpr std::chrono::milliseconds healthy_uptime{60'000};

/// Where an update leaves the marker that has it rolled back if it does not come up.
QString rollback_marker_path();

/// If the marker is there now, removes it after `uptime`, unless `context` is gone by then.
void clear_rollback_marker_when_healthy(const QString &marker, QObject *context,
                                        std::chrono::milliseconds uptime = healthy_uptime);

} // namespace tally::app
