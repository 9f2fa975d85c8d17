#include "platform/host/x11/maps_file.h"

#include <algorithm>
#include <charconv>

namespace tally::platform {

namespace {

/// Cuts the next blank-separated word off `rest`.
std::string_view next_word(std::string_view &rest)
{
    const std::size_t begin = std::min(rest.find_first_not_of(' '), rest.size());
    const std::size_t end = std::min(rest.find(' ', begin), rest.size());
    const std::string_view word = rest.substr(begin, end - begin);
    rest.remove_prefix(end);
    return word;
}

std::optional<std::uint64_t> hex_number(std::string_view text)
{
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<MemoryRegion> region_of_range(std::string_view range)
{
    const std::size_t dash = range.find('-');
    if (dash == std::string_view::npos)
        return std::nullopt;
    const auto begin = hex_number(range.substr(0, dash));
    const auto end = hex_number(range.substr(dash + 1));
    if (!begin || !end || *begin >= *end)
        return std::nullopt;
    return MemoryRegion{*begin, *end};
}

bool can_hold_heap(std::string_view name)
{
    constexpr std::string_view heaps[] = {"[heap]", "[anon", "/memfd:", "/dev/zero"};
    return name.empty() || std::any_of(std::begin(heaps), std::end(heaps),
                                       [&](std::string_view h) { return name.starts_with(h); });
}

} // namespace

std::optional<MemoryRegion> heap_region_of_maps_line(std::string_view line)
{
    const std::string_view range = next_word(line);
    const std::string_view rights = next_word(line);
    next_word(line); // offset
    next_word(line); // device
    const std::string_view inode = next_word(line);
    const std::string_view name = next_word(line);
    if (rights.size() != 4 || rights[0] != 'r' || rights[3] != 'p' || inode.empty())
        return std::nullopt;
    if (!can_hold_heap(name))
        return std::nullopt;
    return region_of_range(range);
}

} // namespace tally::platform
