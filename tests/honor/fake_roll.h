#pragma once

#include "fake_game/roll_image.h"
#include "honor/marker_scan.h"
#include "platform/host/fake/fake_host.h"

#include <memory>

namespace tally::test {

/// An image of a process with content at some addresses.
inline std::shared_ptr<platform::FakeImage> image_of(std::map<std::uint64_t, std::string> regions)
{
    auto image = std::make_shared<platform::FakeImage>();
    image->regions = std::move(regions);
    return image;
}

inline honor::Markers usual_markers()
{
    return {QByteArray{player_name}, QByteArray{first_enemy}, QByteArray{second_enemy}};
}

/// `size` bytes with `what` at `offset`.
inline std::string padded(const std::string &what, std::size_t offset, std::size_t size)
{
    std::string bytes(size, '\0');
    bytes.replace(offset, what.size(), what);
    return bytes;
}

} // namespace tally::test
