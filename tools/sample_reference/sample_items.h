#pragma once

#include <QByteArrayView>
#include <QLatin1StringView>

#include <span>

namespace tally::sample {

/// What an item's icon shows.
enum class Motif {
    Gem,
    Clock,
    Hide,
    Ingot,
    Bone,
    Plank,
    Block,
    Sheaf,
    Coin,
    Book,
    Key,
    Shield,
    Chest,
    Parcel,
    Flask,
    Statue
};

struct SampleItem {
    int type;
    int subtype;
    QLatin1StringView name;
    QLatin1StringView unit;
    double unit_value;
    Motif motif;
    quint32 colour; ///< 0xRRGGBB
};

/// Items of every unit, among them those that the made-up mails drop.
std::span<const SampleItem> sample_items();

/// Names of heroes; hero N bears the name of the entry N - 1, modulo their count, and an epithet.
std::span<const QLatin1StringView> hero_names();
inline constexpr int hero_count = 200;

} // namespace tally::sample
