#include "marker_scan.h"

#include "honor_roll.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace tally::honor {

namespace {

constexpr qsizetype block_size = 128;

/// Whether a tag that one of the lengths follows begins in the block. Reads one byte behind it.
/// No branch inside, so that the compiler tests many bytes at once.
bool may_hold_record(const unsigned char *block, const std::array<unsigned char, 3> &lengths)
{
    const unsigned char first = lengths[0];
    const unsigned char second = lengths[1];
    const unsigned char third = lengths[2];
    unsigned char found = 0;
    for (qsizetype i = 0; i < block_size; ++i) {
        const auto tag = static_cast<unsigned char>(block[i] == record_tag);
        const unsigned char next = block[i + 1];
        const auto length = static_cast<unsigned char>(
            static_cast<unsigned char>(next == first) | static_cast<unsigned char>(next == second) |
            static_cast<unsigned char>(next == third));
        found = static_cast<unsigned char>(found | (tag & length));
    }
    return found != 0;
}

bool searchable(const QByteArray &marker)
{
    return !marker.isEmpty() && marker.size() <= longest_own_name;
}

std::int64_t plausible_honor_before(QByteArrayView bytes, qsizetype tag)
{
    if (tag < honor_before_tag)
        return 0;
    const auto honor = qFromLittleEndian<qint64>(bytes.data() + (tag - honor_before_tag));
    return plausible_entry_honor.holds(honor) ? honor : 0;
}

} // namespace

MarkerScan::MarkerScan(const Markers &markers) : markers_(markers)
{
    for (std::size_t i = 0; i < markers_.size(); ++i) {
        if (searchable(markers_[i]))
            lengths_[i] = static_cast<unsigned char>(markers_[i].size());
    }
}

qsizetype MarkerScan::longest_record() const
{
    return honor_before_name + *std::max_element(lengths_.begin(), lengths_.end());
}

void MarkerScan::find(QByteArrayView bytes, std::uint64_t address,
                      const std::function<void(const MarkerHit &)> &on_hit) const
{
    const auto *data = reinterpret_cast<const unsigned char *>(bytes.data());
    qsizetype block = 0;
    for (; block + block_size < bytes.size(); block += block_size) {
        if (!may_hold_record(data + block, lengths_))
            continue;
        for (qsizetype tag = block; tag < block + block_size; ++tag)
            test_tag(bytes, tag, address, on_hit);
    }
    for (qsizetype tag = block; tag + 1 < bytes.size(); ++tag)
        test_tag(bytes, tag, address, on_hit);
}

void MarkerScan::test_tag(QByteArrayView bytes, qsizetype tag, std::uint64_t address,
                          const std::function<void(const MarkerHit &)> &on_hit) const
{
    if (bytes[tag] != record_tag)
        return;
    const auto length = static_cast<unsigned char>(bytes[tag + 1]);
    const qsizetype name_at = tag + name_behind_tag;
    if (length == 0 || name_at + length > bytes.size())
        return;
    for (std::size_t i = 0; i < markers_.size(); ++i) {
        if (length != lengths_[i] ||
            std::memcmp(bytes.data() + name_at, markers_[i].constData(), length) != 0)
            continue;
        on_hit({i, address + static_cast<std::uint64_t>(name_at),
                plausible_honor_before(bytes, tag)});
    }
}

} // namespace tally::honor
