#pragma once

#include "platform/host/process_memory.h"

namespace tally::platform {

/// The memory of a process through ReadProcessMemory and VirtualQueryEx.
class Win32Memory : public ProcessMemory {
public:
    /// Takes over the process handle and closes it in the end.
    explicit Win32Memory(void *process) : process_(process) {}
    ~Win32Memory() override;
    Win32Memory(const Win32Memory &) = delete;
    Win32Memory &operator=(const Win32Memory &) = delete;

    std::size_t read(std::uint64_t address, void *to, std::size_t size) override;
    std::vector<MemoryRegion> readable_regions(std::uint64_t low, std::uint64_t high) override;

private:
    void *process_;
};

} // namespace tally::platform
