#include "platform/host/fake/fake_memory.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace tally::platform {

namespace {

constexpr std::uint64_t page_size = 4096;

} // namespace

std::size_t FakeMemory::read(std::uint64_t address, void *to, std::size_t size)
{
    ++image_->reads;
    image_->bytes_asked += size;
    if (image_->on_read)
        image_->on_read();
    auto *out = static_cast<char *>(to);
    std::size_t done = 0;
    while (done < size) {
        const std::size_t got = read_in_page(address + done, out + done, size - done);
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

std::size_t FakeMemory::read_in_page(std::uint64_t address, char *to, std::size_t size) const
{
    const std::uint64_t page = address - address % page_size;
    if (image_->gone || image_->unreadable_pages.count(page) != 0)
        return 0;
    auto region = image_->regions.upper_bound(address);
    if (region == image_->regions.begin())
        return 0;
    --region;
    const std::uint64_t end = region->first + region->second.size();
    if (address >= end)
        return 0;
    const std::uint64_t upto = std::min(end, page + page_size);
    const std::size_t count = std::min<std::size_t>(size, upto - address);
    std::memcpy(to, region->second.data() + (address - region->first), count);
    return count;
}

std::vector<MemoryRegion> FakeMemory::readable_regions(std::uint64_t low, std::uint64_t high)
{
    std::vector<MemoryRegion> found;
    if (image_->gone)
        return found;
    for (const auto &[begin, content] : image_->regions) {
        const MemoryRegion region{std::max(begin, low), std::min(begin + content.size(), high)};
        if (region.begin >= region.end)
            continue;
        if (found.size() == region_batch)
            break;
        found.push_back(region);
    }
    return found;
}

} // namespace tally::platform
