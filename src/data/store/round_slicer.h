#pragma once

#include "data/mail/loot_entry.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <array>
#include <map>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

namespace tally::data {

/// The rounds of one chain that no filter can tell apart, added up. Statistics over years read one
/// row a slice (nearly always one a chain) instead of all rounds and their loot.

/// The numbers of a round that filters and groups look at, in the order of `SliceKey::numbers`.
inline constexpr const char *slice_number_columns =
    "npc_btype, is_fort_round, is_free_ap, chain_start_time, chain_end_time, "
    "file_mtime, "
    "hero_id_1, hero_id_2, player_id";

/// What all rounds of a slice have in common, as the store keeps it: without NaN.
struct SliceKey {
    std::array<std::optional<double>, 9> numbers;
    std::optional<QString> player_name;

    bool operator<(const SliceKey &other) const
    {
        return std::tie(numbers, player_name) < std::tie(other.numbers, other.player_name);
    }
};

enum class RoundOutcome : quint8 {
    lootless, ///< the loot's values sum up to 0
    won,      ///< to more
    negative  ///< to less
};

/// A round against a barbarian with an id.
struct SliceFight {
    double npc_ctid;
    RoundOutcome outcome;
};

/// All loot of one item in the slice.
struct SliceItem {
    std::optional<double> item_type;
    std::optional<double> item_subtype;
    double pieces;
    qint32 rounds; ///< in how many rounds it dropped
};

struct ChainSlice {
    SliceKey key;
    qint64 row = 0; ///< of one of its rounds
    int rounds = 0;
    int wins = 0;
    int honor = 0;
    std::vector<SliceFight> fights = {};
    std::vector<SliceItem> items = {};
};

/// What a slice takes in of one round.
struct SlicedRound {
    qint64 row; ///< in the table of rounds
    SliceKey key;
    std::optional<double> level;
    std::optional<double> npc_ctid;
    std::vector<LootEntry> loot; ///< as it was stored: sums of fractions depend on the order
};

/// Sorts the rounds of one chain into slices.
class ChainSlicer {
public:
    void add(const SlicedRound &round);
    const std::vector<ChainSlice> &slices() const { return slices_; }

private:
    struct ItemPlace {
        std::size_t index;
        int last_round; ///< that dropped it
    };
    using ItemId = std::pair<std::optional<double>, std::optional<double>>;

    std::size_t slice_of(SliceKey key, qint64 row);
    void add_loot(std::size_t slice, const std::vector<LootEntry> &loot);

    std::vector<ChainSlice> slices_;
    std::map<SliceKey, std::size_t> places_;
    std::vector<std::map<ItemId, ItemPlace>> item_places_; ///< of each slice
    int rounds_ = 0;
};

// The stored forms: records of fixed size, little-endian.
QByteArray packed(const std::vector<SliceFight> &fights);
QByteArray packed(const std::vector<SliceItem> &items);
void append_unpacked(QByteArrayView packed, std::vector<SliceFight> &fights);
void append_unpacked(QByteArrayView packed, std::vector<SliceItem> &items);

} // namespace tally::data
