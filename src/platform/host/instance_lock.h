#pragma once

#include "platform/host/host.h"

namespace tally::platform {

enum class InstanceClaim {
    Only,      ///< the lock is ours
    Unguarded, ///< the lock itself does not work: start all the same
    Refused,   ///< another instance lives: end with exit code 0
};

/// Claims to be the only instance of the session: ten tries, half a second after each that finds
/// another instance. Says on the standard error stream why a claim was refused or is unguarded.
InstanceClaim claim_single_instance(Host &host);

} // namespace tally::platform
