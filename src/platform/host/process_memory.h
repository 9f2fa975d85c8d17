#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tally::platform {

/// A stretch of addresses, `end` excluded.
struct MemoryRegion {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// The memory of another process, open for reading only. Destroying it closes the process.
class ProcessMemory {
public:
    /// How many regions one call of `readable_regions` gives at most.
    static constexpr std::size_t region_batch = 4096;

    virtual ~ProcessMemory() = default;

    /// Copies up to `size` bytes at `address` to `to`.
    /// \return how many bytes arrived; fewer than `size`, or 0, where memory is missing or refused.
    virtual std::size_t read(std::uint64_t address, void *to, std::size_t size) = 0;

    /// The readable, private, committed regions that can hold a heap and lie in `low` to `high`,
    /// cut to these bounds, ascending, neighbours joined. At most `region_batch` of them: ask again
    /// from the end of the last. None once the process is gone.
    virtual std::vector<MemoryRegion> readable_regions(std::uint64_t low, std::uint64_t high) = 0;
};

} // namespace tally::platform
