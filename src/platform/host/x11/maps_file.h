#pragma once

#include "platform/host/process_memory.h"

#include <optional>
#include <string_view>

namespace tally::platform {

/// The stretch of one line of /proc/PID/maps, if it is readable, private and can hold a heap:
/// memory without a file, or with one that is memory in truth. Stacks, images, devices and the
/// kernel's own pages give nothing, nor does a line that is no such line.
std::optional<MemoryRegion> heap_region_of_maps_line(std::string_view line);

} // namespace tally::platform
