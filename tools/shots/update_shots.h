#pragma once

namespace tally::tools {

class Album;

/// Every state of the update dialog, and the boxes over it. Asks no server.
void take_updates(const Album &album);

} // namespace tally::tools
