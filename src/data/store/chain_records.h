#pragma once

#include "data/mail/loot_entry.h"

#include <QString>
#include <QVariantList>

#include <optional>
#include <vector>

namespace tally::data {

/// What the statistics of barbarian chains hand out. A chain is one mail, a round one fight in it.

/// Which rounds statistics of chains look at: all, those that cost action points, or those that
/// were free. The numbers are those of `TallyDb::free_ap_mode`.
enum class ApSource { all = 0, paid = 1, free = 2 };

/// What statistics of chains are asked for. A chain's time is its start, or its mail's modification
/// time where the start is missing.
struct ChainQuestion {
    double btype = 1.0;         ///< the npc base type
    std::optional<double> from; ///< included; seconds since the Unix epoch
    std::optional<double> to;   ///< not included
    std::optional<double> player;
    ApSource ap_source = ApSource::all;

    bool operator==(const ChainQuestion &) const = default;
};

/// Conditions to append to a WHERE clause, and their values in order.
struct ChainSqlFilter {
    QString sql;
    QVariantList params;
};

struct ChainSummary {
    int battles = 0;
    int engaged = 0; ///< wins + free_ap + tactical
    int kills = 0;   ///< wins + free_ap
    int wins = 0;
    int free_ap = 0;  ///< won rounds whose barbarian got away from an earlier chain
    int tactical = 0; ///< lost rounds whose barbarian was met again in a later chain
    int escapes = 0;
    int files = 0;
    std::optional<double> min_t; ///< of the mails' modification times
    std::optional<double> max_t;
    int n_chains = 0;
    double total_dur = 0.0; ///< seconds
    double avg_dur = 0.0;   ///< seconds
    int honor = 0;
    int chains_ap_only = 0; ///< chains without a `free_ap` round

    bool operator==(const ChainSummary &) const = default;
};

struct BestChain {
    QString file_name;
    int wins = 0;
    double dur = 0.0; ///< seconds
    std::optional<double> start_time;

    bool operator==(const BestChain &) const = default;
};

/// All loot of one item, with what the reference tables say about the item.
struct LootStat {
    std::optional<double> item_type;
    std::optional<double> item_subtype;
    QString name;
    double unit_value = 1.0;
    QString unit;
    QString icon;
    int pieces = 0;
    qint64 total_value = 0; ///< pieces in units
    int battles = 0;        ///< in how many rounds, kills or forts the item dropped

    bool operator==(const LootStat &) const = default;
};

struct HeroPair {
    int hero_1 = 0;
    int hero_2 = 0;
    int chains = 0;

    bool operator==(const HeroPair &) const = default;
};

struct ChainRound {
    int round_no = 0;
    std::optional<double> npc_type;
    std::optional<double> level;
    std::optional<double> result;
    std::optional<double> npc_ctid;
    std::optional<double> disappear_tick;
    std::optional<double> damage_taken;
    std::optional<double> damage_dealt;
    bool is_fort_round = false;
    bool is_free_ap = false;
    std::optional<int> fort_level; ///< of a fort round
    std::vector<LootEntry> loot;   ///< with the items' facts
};

struct ChainRun {
    QString file_name;
    std::optional<double> chain_start_time;
    std::optional<double> chain_end_time;
    QString fort_file_name; ///< empty if none
    std::vector<ChainRound> rounds;
};

/// A round against a barbarian that was known by its id.
struct ChainFight {
    double npc_ctid = 0.0;
    bool won = false; ///< with loot
};

/// What is known of a chain without its rounds.
struct ChainHead {
    QString file_name;
    std::optional<double> chain_start_time;
    std::optional<double> chain_end_time;
    int rounds = 0;
    int wins = 0;                ///< rounds with loot
    bool has_fort_round = false;
    bool has_fort_loot = false;  ///< the fort that is tied to it left something
    std::vector<ChainFight> fights;
};

struct FortOfChain {
    QString file_name;
    double event_time = 0.0;
    int fort_level = 0;
    std::optional<int> tile_x;
    std::optional<int> tile_y;
    int damage_percent = 0;
    std::vector<LootEntry> loot; ///< without the items' facts
};

} // namespace tally::data
