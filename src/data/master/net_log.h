#pragma once

#include <QLoggingCategory>

namespace tally::data {

Q_DECLARE_LOGGING_CATEGORY(log_net)

} // namespace tally::data
