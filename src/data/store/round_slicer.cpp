#include "data/store/round_slicer.h"

#include <QtEndian>

#include <cmath>
#include <limits>

namespace tally::data {

namespace {

struct HonorOfLevels {
    double first;
    double last;
    int honor;
};
constexpr HonorOfLevels honor_table[] = {{41, 45, 10}, {46, 50, 16}, {51, 55, 20}};

constexpr qsizetype fight_size = 9;
constexpr qsizetype item_size = 28;

// SQLite stores no NaN: it turns it into NULL.
std::optional<double> as_stored(std::optional<double> number)
{
    return number && std::isnan(*number) ? std::nullopt : number;
}

int honor_of(std::optional<double> level)
{
    for (const auto &[first, last, honor] : honor_table) {
        if (level && *level >= first && *level <= last)
            return honor;
    }
    return 0;
}

RoundOutcome outcome_of(const std::vector<LootEntry> &loot)
{
    double sum = 0.0;
    for (const LootEntry &entry : loot)
        sum += as_stored(entry.value).value_or(0.0);
    if (sum > 0.0)
        return RoundOutcome::won;
    return sum < 0.0 ? RoundOutcome::negative : RoundOutcome::lootless;
}

template <typename Number>
void put(char *&to, Number number)
{
    qToLittleEndian(number, to);
    to += sizeof number;
}

template <typename Number>
Number get(const char *&from)
{
    const auto number = qFromLittleEndian<Number>(from);
    from += sizeof number;
    return number;
}

double nan_if_absent(std::optional<double> number)
{
    return number.value_or(std::numeric_limits<double>::quiet_NaN());
}

} // namespace

void ChainSlicer::add(const SlicedRound &round)
{
    const std::size_t at = slice_of(round.key, round.row);
    ChainSlice &slice = slices_[at];
    const RoundOutcome outcome = outcome_of(round.loot);
    ++rounds_;
    ++slice.rounds;
    slice.wins += outcome == RoundOutcome::won ? 1 : 0;
    slice.honor += round.loot.empty() ? 0 : honor_of(round.level);
    if (const auto ctid = as_stored(round.npc_ctid))
        slice.fights.push_back({*ctid, outcome});
    add_loot(at, round.loot);
}

std::size_t ChainSlicer::slice_of(SliceKey key, qint64 row)
{
    for (std::optional<double> &number : key.numbers)
        number = as_stored(number);
    const auto [place, is_new] = places_.try_emplace(std::move(key), slices_.size());
    if (is_new) {
        slices_.push_back({.key = place->first, .row = row});
        item_places_.emplace_back();
    }
    return place->second;
}

void ChainSlicer::add_loot(std::size_t slice, const std::vector<LootEntry> &loot)
{
    std::vector<SliceItem> &items = slices_[slice].items;
    for (const LootEntry &entry : loot) {
        const ItemId id{as_stored(entry.item_type), as_stored(entry.item_subtype)};
        const auto [place, is_new] =
            item_places_[slice].try_emplace(id, ItemPlace{items.size(), 0});
        if (is_new)
            items.push_back({id.first, id.second, 0.0, 0});
        SliceItem &item = items[place->second.index];
        item.pieces += as_stored(entry.value).value_or(0.0);
        if (std::exchange(place->second.last_round, rounds_) != rounds_)
            ++item.rounds;
    }
}

QByteArray packed(const std::vector<SliceFight> &fights)
{
    QByteArray bytes(static_cast<qsizetype>(fights.size()) * fight_size, Qt::Uninitialized);
    char *to = bytes.data();
    for (const SliceFight &fight : fights) {
        put(to, fight.npc_ctid);
        put(to, static_cast<quint8>(fight.outcome));
    }
    return bytes;
}

QByteArray packed(const std::vector<SliceItem> &items)
{
    QByteArray bytes(static_cast<qsizetype>(items.size()) * item_size, Qt::Uninitialized);
    char *to = bytes.data();
    for (const SliceItem &item : items) {
        put(to, nan_if_absent(item.item_type));
        put(to, nan_if_absent(item.item_subtype));
        put(to, item.pieces);
        put(to, item.rounds);
    }
    return bytes;
}

void append_unpacked(QByteArrayView packed, std::vector<SliceFight> &fights)
{
    const char *from = packed.data();
    for (qsizetype left = packed.size() / fight_size; left > 0; --left) {
        const auto npc_ctid = get<double>(from);
        fights.push_back({npc_ctid, static_cast<RoundOutcome>(get<quint8>(from))});
    }
}

void append_unpacked(QByteArrayView packed, std::vector<SliceItem> &items)
{
    const char *from = packed.data();
    for (qsizetype left = packed.size() / item_size; left > 0; --left) {
        const auto type = as_stored(get<double>(from));
        const auto subtype = as_stored(get<double>(from));
        const auto pieces = get<double>(from);
        items.push_back({type, subtype, pieces, get<qint32>(from)});
    }
}

} // namespace tally::data
