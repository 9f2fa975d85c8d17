#include "platform/updater/update_log.h"

namespace tally::platform::Updater {

Q_LOGGING_CATEGORY(log_update, "tally.update")

} // namespace tally::platform::Updater
