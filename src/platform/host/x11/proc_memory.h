#pragma once

#include "platform/host/host.h"

#include <sys/types.h>

namespace tally::platform {

/// The memory of a process through process_vm_readv and /proc/PID/maps.
class ProcMemory : public ProcessMemory {
public:
    /// Opens it and reads one byte, since the list of regions may be shown to those who are refused
    /// the content.
    static OpenedProcess open(std::uint32_t process_id);

    std::size_t read(std::uint64_t address, void *to, std::size_t size) override;
    std::vector<MemoryRegion> readable_regions(std::uint64_t low, std::uint64_t high) override;

private:
    explicit ProcMemory(pid_t pid) : pid_(pid) {}

    pid_t pid_;
};

} // namespace tally::platform
