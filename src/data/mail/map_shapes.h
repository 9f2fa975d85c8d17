#pragma once

#include <QByteArrayView>
#include <QString>
#include <QVariant>

#include <array>
#include <cstddef>
#include <deque>
#include <map>
#include <memory_resource>
#include <vector>

namespace tally::data {

/// What a QVariantMap is made of.
using Tree = std::map<QString, QVariant>;

/// The list of keys of a map that the decoder has met: a mail repeats the same few lists of keys
/// many times (every troop, skill or buff has the same fields).
struct MapShape {
    explicit MapShape(std::pmr::memory_resource *memory) : keys(memory), ranks(memory) {}

    std::pmr::vector<QByteArrayView> keys; ///< encoded, in the order of the file
    std::pmr::vector<quint32> ranks;       ///< for each of `keys`, its place in the ordered map
    Tree blank;                            ///< the ordered map with invalid values
};

/// Remembers the shape met last in each context of one mail. Copying a blank map of the right shape
/// and filling in its values spares the decoder what costs most: comparing keys to find their
/// place, and finding the text of each key.
class MapShapes {
public:
    /// Longer lists are not remembered.
    static constexpr size_t max_keys = 512;

    /// The shape expected in a context, or null. It stays valid as long as this object.
    const MapShape *expected(quint64 context) const
    {
        const Slot &slot = slots_[slot_of(context)];
        return slot.entered ? nullptr : slot.shape;
    }

    /// While a map of the expected shape is read, none is expected inside it in the same context:
    /// otherwise each of a hundred maps inside one another could cost a blank of five hundred keys.
    void enter(quint64 context) { slots_[slot_of(context)].entered = true; }
    void leave(quint64 context) { slots_[slot_of(context)].entered = false; }

    void confirm(quint64 context) { slots_[slot_of(context)].trusted = true; }

    /// After a map of another shape: a new shape to fill in, which will be expected from now on.
    /// Null if the old one was right before and gets one more chance, or if the new one is not
    /// worth keeping.
    MapShape *replace_expected(quint64 context, size_t key_count)
    {
        Slot &slot = slots_[slot_of(context)];
        const bool give_chance = std::exchange(slot.trusted, false);
        if (give_chance || key_count == 0 || key_count > max_keys)
            return nullptr;
        if (shapes_.size() >= max_shapes) {
            slot.shape = nullptr; // copying its blank for map after map would be in vain
            return nullptr;
        }
        // The old shape is kept too: a map around this one may be in the middle of it.
        MapShape &shape = shapes_.emplace_back(&memory_);
        slot.shape = &shape;
        return &shape;
    }

private:
    struct Slot {
        const MapShape *shape = nullptr;
        bool trusted = false;
        bool entered = false;
    };
    static constexpr size_t slot_count = 128;
    // Bounds what is kept of a mail that changes its shapes all the time.
    static constexpr size_t max_shapes = 512;

    static size_t slot_of(quint64 context) { return (context * 0x9e3779b97f4a7c15u) >> 57; }

    std::array<Slot, slot_count> slots_;
    // Enough for all shapes of most mails. A large allocation would make glibc's malloc sort out
    // all the nodes that the last mail's tree gave back.
    std::array<std::byte, 65536> first_memory_;
    std::pmr::monotonic_buffer_resource memory_{first_memory_.data(), first_memory_.size()};
    std::pmr::deque<MapShape> shapes_{&memory_};
};

} // namespace tally::data
