#pragma once

namespace tally::tools {

class Album;
class SampleStore;

/// The statistics overlay over a busy picture: its modes at the smallest, the usual and the largest
/// type.
void take_overlays(const Album &album, SampleStore &store);

} // namespace tally::tools
