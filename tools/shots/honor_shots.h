#pragma once

namespace tally::tools {

class Album;
class SampleStore;

/// The honor overlay in all its states, at the smallest, the usual and the largest type, and the
/// history, without rows and with some.
void take_honor_tracker(const Album &album, SampleStore &store);

} // namespace tally::tools
