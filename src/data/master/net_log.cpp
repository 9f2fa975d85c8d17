#include "data/master/net_log.h"

namespace tally::data {

Q_LOGGING_CATEGORY(log_net, "tally.net")

} // namespace tally::data
