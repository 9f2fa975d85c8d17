#include "honor/memory_window.h"

#include <algorithm>
#include <array>

namespace tally::honor {

QByteArray read_window(platform::ProcessMemory &memory, std::uint64_t start, std::uint64_t size,
                       const std::stop_token &stop)
{
    QByteArray window(static_cast<qsizetype>(size), '\0');
    std::array<char, read_page_size> page{};
    const std::uint64_t end = start + size;
    for (std::uint64_t at = start; at < end && !stop.stop_requested();) {
        const std::uint64_t page_end = std::min(end, next_page(at));
        // Through a page of its own: what a failed read left behind must not show.
        const std::size_t got = memory.read(at, page.data(), page_end - at);
        std::copy_n(page.data(), got, window.data() + (at - start));
        at = page_end;
    }
    return window;
}

} // namespace tally::honor
