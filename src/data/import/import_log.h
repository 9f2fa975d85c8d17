#pragma once

#include <QLoggingCategory>

namespace tally::data {

Q_DECLARE_LOGGING_CATEGORY(log_import)

} // namespace tally::data
