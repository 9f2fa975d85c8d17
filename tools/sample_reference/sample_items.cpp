#include "sample_items.h"

#include <array>

namespace tally::sample {
namespace {

constexpr QLatin1StringView operator""_l(const char *text, std::size_t size)
{
    return QLatin1StringView(text, static_cast<qsizetype>(size));
}

constexpr quint32 plain = 0xb8bec6;
constexpr quint32 green = 0x58b368;
constexpr quint32 blue = 0x4f8fd8;
constexpr quint32 violet = 0xa169d6;
constexpr quint32 orange = 0xe8973a;

constexpr std::array items = {
    SampleItem{1, 1, "Food"_l, "food"_l, 1, Motif::Sheaf, 0xe3c04c},
    SampleItem{1, 2, "Wood"_l, "wood"_l, 1, Motif::Plank, 0xa8743d},
    SampleItem{1, 3, "Stone"_l, "stone"_l, 1, Motif::Block, 0x9aa0a8},
    SampleItem{1, 4, "Gold"_l, "gold"_l, 1, Motif::Coin, 0xf0b93a},
    SampleItem{1, 11, "10,000 Food"_l, "food"_l, 10000, Motif::Sheaf, 0xe3c04c},
    SampleItem{1, 12, "10,000 Wood"_l, "wood"_l, 10000, Motif::Plank, 0xa8743d},
    SampleItem{1, 13, "7,500 Stone"_l, "stone"_l, 7500, Motif::Block, 0x9aa0a8},
    SampleItem{1, 14, "3,000 Gold"_l, "gold"_l, 3000, Motif::Coin, 0xf0b93a},
    SampleItem{2, 34, "Universal Speedup"_l, "min"_l, 60, Motif::Clock, green},
    SampleItem{2, 71, "Training Speedup"_l, "min"_l, 15, Motif::Clock, orange},
    SampleItem{2, 72, "Training Speedup (60 min)"_l, "min"_l, 60, Motif::Clock, orange},
    SampleItem{2, 81, "Research Speedup"_l, "min"_l, 60, Motif::Clock, blue},
    SampleItem{2, 82, "Building Speedup"_l, "min"_l, 60, Motif::Clock, violet},
    SampleItem{2, 92, "Healing Speedup"_l, "min"_l, 60, Motif::Clock, 0xd85a6a},
    SampleItem{4, 201, "Leather"_l, "leather"_l, 1, Motif::Hide, plain},
    SampleItem{4, 202, "Iron Ore"_l, "iron ore"_l, 1, Motif::Ingot, plain},
    SampleItem{4, 203, "Animal Bones"_l, "animal bones"_l, 1, Motif::Bone, plain},
    SampleItem{4, 204, "Ebony"_l, "ebony"_l, 1, Motif::Plank, plain},
    SampleItem{4, 200001, "Advanced Leather"_l, "leather"_l, 1, Motif::Hide, green},
    SampleItem{4, 200002, "Advanced Iron Ore"_l, "iron ore"_l, 1, Motif::Ingot, green},
    SampleItem{4, 200003, "Advanced Animal Bones"_l, "animal bones"_l, 1, Motif::Bone, green},
    SampleItem{4, 200004, "Advanced Ebony"_l, "ebony"_l, 1, Motif::Plank, green},
    SampleItem{4, 200310, "Elite Ebony"_l, "ebony"_l, 1, Motif::Plank, blue},
    SampleItem{4, 200311, "Elite Leather"_l, "leather"_l, 1, Motif::Hide, blue},
    SampleItem{4, 200312, "Epic Iron Ore"_l, "iron ore"_l, 1, Motif::Ingot, violet},
    SampleItem{4, 200313, "Legendary Animal Bones"_l, "animal bones"_l, 1, Motif::Bone, orange},
    SampleItem{6, 300011, "Normal Chest"_l, "chest"_l, 1, Motif::Chest, plain},
    SampleItem{6, 300012, "Advanced Chest"_l, "chest"_l, 1, Motif::Chest, green},
    SampleItem{6, 300013, "Elite Chest"_l, "chest"_l, 1, Motif::Chest, blue},
    SampleItem{6, 300014, "Epic Chest"_l, "chest"_l, 1, Motif::Chest, violet},
    SampleItem{6, 300017, "Golden Key"_l, "key"_l, 1, Motif::Key, 0xe8bb3e},
    SampleItem{6, 300018, "Silver Key"_l, "key"_l, 1, Motif::Key, 0xc3cad4},
    SampleItem{7, 1, "Basic AP Recovery"_l, "ap"_l, 100, Motif::Flask, green},
    SampleItem{7, 2, "Emergency AP Recovery"_l, "ap"_l, 50, Motif::Flask, blue},
    SampleItem{8, 1, "Enhanced Attack"_l, "buff"_l, 1, Motif::Shield, 0xd85a6a},
    SampleItem{8, 2, "Enhanced Defense"_l, "buff"_l, 1, Motif::Shield, blue},
    SampleItem{9, 0, "Gem"_l, "gems"_l, 1, Motif::Gem, 0xff6b9d},
    SampleItem{9, 100, "Bag of Gems"_l, "gems"_l, 100, Motif::Gem, 0xd14a86},
    SampleItem{10, 1, "Tome of Knowledge"_l, "xp"_l, 1000, Motif::Book, violet},
    SampleItem{11, 1, "Book of Covenant"_l, "book"_l, 1, Motif::Book, 0x8a5a34},
    SampleItem{12, 1, "Resource Pack"_l, "packs"_l, 1, Motif::Parcel, 0xc79a5b},
    SampleItem{13, 401000012, "Starlight Sculpture"_l, ""_l, 1, Motif::Statue, violet},
    SampleItem{14, 5500003, "Crystal"_l, "crystals"_l, 1, Motif::Gem, 0x5cd6f5},
};

constexpr std::array heroes = {
    "Achilles"_l,  "Ajax"_l,       "Antigone"_l,    "Atalanta"_l,  "Brennus"_l,    "Camilla"_l,
    "Cassander"_l, "Cassandra"_l,  "Cato"_l,        "Clelia"_l,    "Coriolanus"_l, "Daedalus"_l,
    "Dido"_l,      "Diomedes"_l,   "Electra"_l,     "Evander"_l,   "Fabius"_l,     "Hector"_l,
    "Hippolyta"_l, "Horatius"_l,   "Icarus"_l,      "Iphigenia"_l, "Jason"_l,      "Lavinia"_l,
    "Leonidas"_l,  "Lucretia"_l,   "Lysander"_l,    "Medea"_l,     "Memnon"_l,     "Miltiades"_l,
    "Nestor"_l,    "Numa"_l,       "Odysseus"_l,    "Orestes"_l,   "Pandora"_l,    "Patroclus"_l,
    "Penelope"_l,  "Perseus"_l,    "Philoctetes"_l, "Priam"_l,     "Pyrrhus"_l,    "Romulus"_l,
    "Sarpedon"_l,  "Telemachus"_l, "Theseus"_l,     "Troilus"_l,   "Turnus"_l,     "Vercassa"_l,
    "Virginia"_l,  "Xanthippus"_l,
};

} // namespace

std::span<const SampleItem> sample_items()
{
    return items;
}

std::span<const QLatin1StringView> hero_names()
{
    return heroes;
}

} // namespace tally::sample
