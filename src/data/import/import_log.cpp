#include "data/import/import_log.h"

namespace tally::data {

Q_LOGGING_CATEGORY(log_import, "tally.import")

} // namespace tally::data
