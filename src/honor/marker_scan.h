#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <cstdint>
#include <functional>

namespace tally::honor {

/// The names to look for, in UTF-8: the player, then two enemies.
using Markers = std::array<QByteArray, 3>;
inline constexpr std::size_t player_marker = 0;

/// A name of the markers in the shape of a record: tag, its length, its bytes.
struct MarkerHit {
    std::size_t marker = 0;
    std::uint64_t name_address = 0;
    std::int64_t honor = 0; ///< where a record has its honor; 0 if implausible or out of view
};

/// Looks for all markers in one pass over the bytes. What makes it fast is that the two bytes before
/// a name are rare as a pair: a name that stands in running text is never even compared.
class MarkerScan {
public:
    explicit MarkerScan(const Markers &markers);

    /// Bytes from a record's honor to the end of the longest name: how far buffers must overlap
    /// for no hit to be lost between them.
    qsizetype longest_record() const;

    /// Calls `on_hit` for each hit in `bytes`, which stand at `address`, in ascending order.
    void find(QByteArrayView bytes, std::uint64_t address,
              const std::function<void(const MarkerHit &)> &on_hit) const;

private:
    void test_tag(QByteArrayView bytes, qsizetype tag, std::uint64_t address,
                  const std::function<void(const MarkerHit &)> &on_hit) const;

    Markers markers_;
    std::array<unsigned char, 3> lengths_{};
};

} // namespace tally::honor
