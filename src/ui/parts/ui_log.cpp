#include "ui/parts/ui_log.h"

namespace tally::ui {

Q_LOGGING_CATEGORY(log_ui, "tally.ui")

} // namespace tally::ui
