#pragma once

#include "platform/host/host.h"

#include <memory>

namespace tally::platform {

/// The backend of the system that this program was built for.
std::unique_ptr<Host> make_system_host();

} // namespace tally::platform
