#include "honor/memory_walk.h"

#include "honor/memory_window.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace tally::honor {

MemoryWalk::MemoryWalk(platform::ProcessMemory &memory, std::size_t overlap, std::stop_token stop)
    : memory_(memory), overlap_(overlap), stop_(std::move(stop)),
      buffer_(overlap + read_page_size + chunk_size)
{
    const auto earliest = reinterpret_cast<std::uintptr_t>(buffer_.data()) + overlap;
    piece_ = buffer_.data() + overlap + (next_page(earliest) - earliest);
}

void MemoryWalk::run(std::uint64_t low, std::uint64_t high, const OnBytes &on_bytes)
{
    reached_ = low;
    while (!stop_.stop_requested()) {
        const auto regions = memory_.readable_regions(reached_, high);
        if (regions.empty())
            return;
        for (const platform::MemoryRegion &region : regions) {
            if (!walk_region(region, on_bytes))
                break; // the list is out of date, or a stop was requested
        }
    }
}

/// \return false where the list of regions should be asked for again.
bool MemoryWalk::walk_region(platform::MemoryRegion region, const OnBytes &on_bytes)
{
    carried_ = 0;
    reached_ = region.begin;
    while (reached_ < region.end) {
        if (stop_.stop_requested())
            return false;
        const std::uint64_t end = std::min<std::uint64_t>(region.end, reached_ + chunk_size);
        if (walk_chunk(reached_, end, on_bytes))
            continue;
        // Nothing came of a whole chunk: the list may be out of date, or the process gone. Asking
        // after the 1st, 2nd, 4th, 8th ... such chunk keeps the cost of asking small.
        if (std::has_single_bit(++empty_chunks_))
            return false;
    }
    return true;
}

/// \return whether anything could be read.
bool MemoryWalk::walk_chunk(std::uint64_t begin, std::uint64_t end, const OnBytes &on_bytes)
{
    reached_ = begin + take(begin, end - begin, on_bytes);
    if (reached_ == end)
        return true;
    // Something in here can't be read. Page by page, since a system may deliver nothing at all of
    // a piece that holds such a page.
    bool any = reached_ > begin;
    while (reached_ < end) {
        const std::uint64_t page_end = std::min(end, next_page(reached_));
        if (take(reached_, page_end - reached_, on_bytes) == 0)
            carried_ = 0;
        else
            any = true;
        reached_ = page_end;
    }
    return any;
}

/// Reads one piece and shows it. \return how many bytes came.
std::size_t MemoryWalk::take(std::uint64_t address, std::size_t size, const OnBytes &on_bytes)
{
    const std::size_t got = memory_.read(address, piece_, size);
    if (got == 0)
        return 0;
    const char *begin = piece_ - carried_;
    const char *end = piece_ + got;
    on_bytes(QByteArrayView{begin, end}, address - carried_);
    carried_ = std::min(overlap_, carried_ + got);
    std::memmove(piece_ - carried_, end - carried_, carried_);
    return got;
}

} // namespace tally::honor
