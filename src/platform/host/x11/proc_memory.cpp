#include "platform/host/x11/proc_memory.h"

#include "platform/host/x11/maps_file.h"

#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <string>

namespace tally::platform {

namespace {

/// A file descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int get() const { return fd_; }

private:
    int fd_;
};

ssize_t read_from(pid_t pid, std::uint64_t address, void *to, std::size_t size)
{
    const iovec local{to, size};
    // The kernel takes a foreign address as a pointer of ours; it is never followed here.
    const iovec remote{reinterpret_cast<void *>(static_cast<std::uintptr_t>(address)), size};
    return ::process_vm_readv(pid, &local, 1, &remote, 1, 0);
}

/// Collects regions within bounds, joining neighbours.
class RegionList {
public:
    RegionList(std::uint64_t low, std::uint64_t high) : low_(low), high_(high) {}

    /// \return false when no further region is wanted.
    bool add(MemoryRegion region)
    {
        if (region.begin >= high_)
            return false;
        region.begin = std::max(region.begin, low_);
        region.end = std::min(region.end, high_);
        if (region.begin >= region.end)
            return true;
        if (!regions_.empty() && regions_.back().end == region.begin) {
            regions_.back().end = region.end;
            return true;
        }
        if (regions_.size() == ProcessMemory::region_batch)
            return false;
        regions_.push_back(region);
        return true;
    }

    std::vector<MemoryRegion> take() { return std::move(regions_); }

private:
    std::uint64_t low_;
    std::uint64_t high_;
    std::vector<MemoryRegion> regions_;
};

/// Adds every heap region whose whole line stands in `text`. \return the unfinished last line, or
/// nothing when no further text is wanted.
std::optional<std::string> add_lines(std::string_view text, RegionList &regions)
{
    std::size_t end = 0;
    while ((end = text.find('\n')) != std::string_view::npos) {
        const auto region = heap_region_of_maps_line(text.substr(0, end));
        if (region && !regions.add(*region))
            return std::nullopt;
        text.remove_prefix(end + 1);
    }
    return std::string{text};
}

} // namespace

OpenedProcess ProcMemory::open(std::uint32_t process_id)
{
    constexpr auto largest_pid = static_cast<std::uint32_t>(std::numeric_limits<pid_t>::max());
    if (process_id == 0 || process_id > largest_pid)
        return {};
    const auto pid = static_cast<pid_t>(process_id);
    const Descriptor maps{
        ::open(("/proc/" + std::to_string(pid) + "/maps").c_str(), O_RDONLY | O_CLOEXEC)};
    if (maps.get() < 0)
        return {nullptr, errno == EACCES || errno == EPERM};
    // Rights are tested before addresses, so that an unreadable address still answers the question.
    char probe = 0;
    if (read_from(pid, 0, &probe, 1) < 0 && errno != EFAULT)
        return {nullptr, errno == EACCES || errno == EPERM};
    return {std::unique_ptr<ProcessMemory>{new ProcMemory{pid}}, false};
}

std::size_t ProcMemory::read(std::uint64_t address, void *to, std::size_t size)
{
    const ssize_t got = read_from(pid_, address, to, size);
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

std::vector<MemoryRegion> ProcMemory::readable_regions(std::uint64_t low, std::uint64_t high)
{
    RegionList regions{low, high};
    const Descriptor maps{
        ::open(("/proc/" + std::to_string(pid_) + "/maps").c_str(), O_RDONLY | O_CLOEXEC)};
    std::array<char, 16384> block{};
    std::string text;
    ssize_t got = 0;
    while ((got = ::read(maps.get(), block.data(), block.size())) > 0) {
        text.append(block.data(), static_cast<std::size_t>(got));
        auto unfinished = add_lines(text, regions);
        if (!unfinished)
            break;
        text = std::move(*unfinished);
    }
    return regions.take();
}

} // namespace tally::platform
