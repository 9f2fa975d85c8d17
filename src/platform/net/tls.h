#pragma once

#include "platform/endpoint/endpoint.h"

#include <QSslConfiguration>

namespace tally::platform {

/// Trusts the endpoint's own authorities, where it names some, in the place of the system's.
QSslConfiguration tls_of(const Endpoint &endpoint);

} // namespace tally::platform
