#pragma once

#include "data/master/master_cache.h"
#include "data/store/chain_records.h"

#include <optional>
#include <utility>
#include <vector>

namespace tally::test {

/// Rounds and chains in a line, for tests that care about few of their fields.

inline data::LootEntry loot_of(std::optional<double> value, const QString &name = {},
                               const QString &unit = {})
{
    data::LootEntry entry;
    entry.value = value;
    entry.name = name;
    entry.unit = unit;
    return entry;
}

inline data::LootEntry loot_of_item(double type, double subtype, double value)
{
    data::LootEntry entry = loot_of(value);
    entry.item_type = type;
    entry.item_subtype = subtype;
    return entry;
}

inline data::ChainRound lost_round(std::optional<double> npc_ctid = {})
{
    data::ChainRound round;
    round.npc_ctid = npc_ctid;
    return round;
}

inline data::ChainRound won_round(std::optional<double> npc_ctid = {})
{
    data::ChainRound round = lost_round(npc_ctid);
    round.loot = {loot_of_item(1.0, 2.0, 3.0)};
    return round;
}

inline data::ChainRound fort_round(std::optional<double> damage_dealt)
{
    data::ChainRound round;
    round.is_fort_round = true;
    round.damage_dealt = damage_dealt;
    return round;
}

/// Numbers its rounds from 0.
inline data::ChainRun chain_of(const QString &name, std::optional<double> start,
                               std::vector<data::ChainRound> rounds)
{
    int number = 0;
    for (data::ChainRound &round : rounds)
        round.round_no = number++;
    data::ChainRun chain;
    chain.file_name = name;
    chain.chain_start_time = start;
    chain.rounds = std::move(rounds);
    return chain;
}

/// The reference tables, empty before and after.
class ReferenceTables {
public:
    ReferenceTables() { cache().clear(); }
    ~ReferenceTables() { cache().clear(); }
    Q_DISABLE_COPY_MOVE(ReferenceTables)

    void set_item(int type, int subtype, const QString &name, const QString &unit)
    {
        items_.insert(QStringLiteral("%1.0_%2.0").arg(type).arg(subtype),
                      QVariantMap{{QStringLiteral("name"), name}, {QStringLiteral("unit"), unit}});
        cache().set_kind(QStringLiteral("items"), {{QStringLiteral("items"), items_}});
    }
    void set_barbs(int min, int max, const QString &name, int level_offset)
    {
        const QVariantMap type{{QStringLiteral("npc_type_min"), min},
                               {QStringLiteral("npc_type_max"), max},
                               {QStringLiteral("name"), name},
                               {QStringLiteral("level_offset"), level_offset}};
        cache().set_kind(QStringLiteral("barbs"), {{QStringLiteral("types"), QVariantList{type}}});
    }

private:
    static data::MasterCache &cache() { return data::MasterCache::instance(); }

    QVariantMap items_;
};

} // namespace tally::test
