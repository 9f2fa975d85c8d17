#pragma once

#include "platform/host/process_memory.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace tally::platform {

/// The memory image that a scripted process shows.
struct FakeImage {
    std::map<std::uint64_t, std::string> regions; ///< first address and content; no overlaps
    std::set<std::uint64_t> unreadable_pages;     ///< addresses of 4096-byte pages
    bool gone = false;                            ///< the process has ended
    std::size_t reads = 0;                        ///< how often it was read
    std::uint64_t bytes_asked = 0;
    std::function<void()> on_read; ///< called at the start of each read
};

/// Reads a scripted image as the kernel would: up to the first page that is missing or refused.
class FakeMemory : public ProcessMemory {
public:
    explicit FakeMemory(std::shared_ptr<FakeImage> image) : image_(std::move(image)) {}

    std::size_t read(std::uint64_t address, void *to, std::size_t size) override;
    std::vector<MemoryRegion> readable_regions(std::uint64_t low, std::uint64_t high) override;

private:
    std::size_t read_in_page(std::uint64_t address, char *to, std::size_t size) const;

    // Shared with the script, which changes the image while it is being read.
    std::shared_ptr<FakeImage> image_;
};

} // namespace tally::platform
