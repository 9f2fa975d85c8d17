#include "platform/host/win32/win32_memory.h"

#include <windows.h>

#include <algorithm>

namespace tally::platform {

namespace {

bool can_hold_heap(const MEMORY_BASIC_INFORMATION &info)
{
    constexpr DWORD readable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                               PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    return info.State == MEM_COMMIT && info.Type == MEM_PRIVATE && (info.Protect & readable) != 0 &&
           (info.Protect & PAGE_GUARD) == 0;
}

} // namespace

Win32Memory::~Win32Memory()
{
    CloseHandle(process_);
}

std::size_t Win32Memory::read(std::uint64_t address, void *to, std::size_t size)
{
    SIZE_T got = 0;
    const auto *from = reinterpret_cast<const void *>(static_cast<std::uintptr_t>(address));
    return ReadProcessMemory(process_, from, to, size, &got) != FALSE ? got : 0;
}

std::vector<MemoryRegion> Win32Memory::readable_regions(std::uint64_t low, std::uint64_t high)
{
    std::vector<MemoryRegion> regions;
    std::uint64_t at = low;
    MEMORY_BASIC_INFORMATION info{};
    while (at < high && VirtualQueryEx(process_, reinterpret_cast<const void *>(at), &info,
                                       sizeof info) == sizeof info) {
        const auto begin = reinterpret_cast<std::uint64_t>(info.BaseAddress);
        const std::uint64_t end = begin + info.RegionSize;
        if (end <= at)
            break;
        if (can_hold_heap(info)) {
            const MemoryRegion region{std::max(begin, low), std::min(end, high)};
            if (!regions.empty() && regions.back().end == region.begin)
                regions.back().end = region.end;
            else if (regions.size() == region_batch)
                break;
            else
                regions.push_back(region);
        }
        at = end;
    }
    return regions;
}

} // namespace tally::platform
