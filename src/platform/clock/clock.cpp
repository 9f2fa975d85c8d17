#include "platform/clock/clock.h"

#include <QDateTime>

namespace tally::platform {

double system_time()
{
    return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
}

} // namespace tally::platform
