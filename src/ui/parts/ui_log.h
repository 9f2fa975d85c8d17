#pragma once

#include <QLoggingCategory>

namespace tally::ui {

Q_DECLARE_LOGGING_CATEGORY(log_ui)

} // namespace tally::ui
