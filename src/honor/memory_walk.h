#pragma once

#include "platform/host/process_memory.h"

#include <QByteArrayView>

#include <cstdint>
#include <functional>
#include <stop_token>
#include <vector>

namespace tally::honor {

/// Shows every readable byte of a process between two bounds once, in ascending order, piece by
/// piece. Regions that come and go meanwhile are met as they are.
class MemoryWalk {
public:
    /// Small enough to stay in the processor's cache between being copied and being searched.
    static constexpr std::size_t chunk_size = std::size_t{256} << 10;

    /// `overlap`: how many bytes of the piece before are shown again in front of the next, so that
    /// nothing shorter is lost where they meet.
    MemoryWalk(platform::ProcessMemory &memory, std::size_t overlap, std::stop_token stop);

    using OnBytes = std::function<void(QByteArrayView bytes, std::uint64_t address)>;

    /// Ends early, at a chunk's boundary, when a stop is requested.
    void run(std::uint64_t low, std::uint64_t high, const OnBytes &on_bytes);

private:
    bool walk_region(platform::MemoryRegion region, const OnBytes &on_bytes);
    bool walk_chunk(std::uint64_t begin, std::uint64_t end, const OnBytes &on_bytes);
    std::size_t take(std::uint64_t address, std::size_t size, const OnBytes &on_bytes);

    platform::ProcessMemory &memory_;
    std::size_t overlap_;
    std::stop_token stop_;
    std::vector<char> buffer_;
    char *piece_; ///< where pieces go: a page's begin, with the bytes carried over before it
    std::size_t carried_ = 0;   ///< how many bytes are carried over
    std::uint64_t reached_ = 0; ///< end of what was shown or passed over
    unsigned empty_chunks_ = 0;
};

} // namespace tally::honor
