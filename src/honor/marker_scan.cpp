#include "honor/marker_scan.h"

#include "honor/honor_roll.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace tally::honor {

namespace {

constexpr qsizetype block_size = 128;

/// Sixteen bytes that are compared at once; a compiler's extension that GCC and clang know on every
/// processor.
using Lane = unsigned char __attribute__((vector_size(16)));
constexpr qsizetype lane_size = sizeof(Lane);

Lane load(const unsigned char *bytes)
{
    Lane lane;
    std::memcpy(&lane, bytes, sizeof lane);
    return lane;
}

bool any(const Lane &lane)
{
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), &lane, sizeof lane);
    return (halves[0] | halves[1]) != 0;
}

/// Marks in a lane where a tag that one of the lengths follows may stand.
class TagFilter {
public:
    explicit TagFilter(const std::array<unsigned char, 3> &lengths)
        : first_(Lane{} + lengths[0]), second_(Lane{} + lengths[1]), third_(Lane{} + lengths[2])
    {}

    /// Reads one byte more than a lane.
    Lane marks(const unsigned char *bytes) const
    {
        const Lane here = load(bytes);
        const Lane next = load(bytes + 1);
        return (here == tag_) & ((next == first_) | (next == second_) | (next == third_));
    }

    /// The same of a whole block at once.
    bool any_in_block(const unsigned char *block) const
    {
        Lane found{};
        for (qsizetype i = 0; i < block_size; i += lane_size)
            found |= marks(block + i);
        return any(found);
    }

private:
    Lane tag_ = Lane{} + static_cast<unsigned char>(record_tag);
    Lane first_;
    Lane second_;
    Lane third_;
};

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
    const TagFilter filter{lengths_};
    qsizetype block = 0;
    for (; block + block_size < bytes.size(); block += block_size) {
        if (!filter.any_in_block(data + block))
            continue;
        for (qsizetype lane = block; lane < block + block_size; lane += lane_size) {
            if (!any(filter.marks(data + lane)))
                continue;
            for (qsizetype tag = lane; tag < lane + lane_size; ++tag)
                test_tag(bytes, tag, address, on_hit);
        }
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
        on_hit(
            {i, address + static_cast<std::uint64_t>(name_at), plausible_honor_before(bytes, tag)});
    }
}

} // namespace tally::honor
