#pragma once

namespace tally::platform {

/// Enables SeDebugPrivilege for this process, where its user holds it.
void enable_own_debug_privilege();

/// Whether this process runs with the rights of the Administrators group.
bool member_of_administrators();

} // namespace tally::platform
