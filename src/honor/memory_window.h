#pragma once

#include "platform/host/process_memory.h"

#include <QByteArray>

#include <cstdint>
#include <stop_token>

namespace tally::honor {

inline constexpr std::uint64_t read_page_size = 4096;

/// The first address of the next page.
constexpr std::uint64_t next_page(std::uint64_t address)
{
    return (address / read_page_size + 1) * read_page_size;
}

/// `distance` below `address`, but not below 0.
constexpr std::uint64_t address_below(std::uint64_t address, std::uint64_t distance)
{
    return address > distance ? address - distance : 0;
}

/// `size` bytes from `start`, page by page; what can't be read is zero, as is all that is left when
/// a stop is requested.
QByteArray read_window(platform::ProcessMemory &memory, std::uint64_t start, std::uint64_t size,
                       const std::stop_token &stop);

} // namespace tally::honor
