#pragma once

#include <QLoggingCategory>

namespace tally::platform::Updater {

Q_DECLARE_LOGGING_CATEGORY(log_update)

} // namespace tally::platform::Updater
