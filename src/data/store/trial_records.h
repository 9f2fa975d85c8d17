#pragma once

#include "data/mail/loot_entry.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace tally::data {

/// What the queries over boss kills ("trials") and forts hand out. Their `LootEntry`s come without
/// the items' facts.

/// An item of a strip of loot pictures.
struct LootStripItem {
    int item_type = 0;
    int item_subtype = 0;
    qint64 quantity = 0;

    bool operator==(const LootStripItem &) const = default;
};

struct TrialPlayerRow {
    QString name;
    std::optional<double> player_id;
    int kills = 0;

    bool operator==(const TrialPlayerRow &) const = default;
};

/// Kills that followed each other within a time limit.
struct TrialSession {
    double start = 0.0;
    double end = 0.0;
    QStringList bosses = {}; ///< each once, in first-seen order
    QStringList file_names = {};
    int kills = 0;

    bool operator==(const TrialSession &) const = default;
};

struct SessionPlayer {
    QString name;
    std::optional<double> player_id;
    int kills = 0;
    std::vector<LootStripItem> loot; ///< summed up by item

    bool operator==(const SessionPlayer &) const = default;
};

struct PlayerKill {
    QString file_name;
    QString boss_name;
    double event_time = 0.0;
    std::optional<int> tile_x;
    std::optional<int> tile_y;
    double damage_rate = 0.0; ///< as the mail had it
    std::vector<LootEntry> loot;
};

struct KeepKill {
    QString file_name;
    QString boss_name;
    double event_time = 0.0;
    std::optional<int> tile_x;
    std::optional<int> tile_y;
    double damage_rate = 0.0; ///< per cent
};

struct TrialParticipantRow {
    qint64 id = 0;
    QString player_name;
    std::optional<double> player_id;
    double damage_rate = 0.0; ///< per cent
    std::vector<LootEntry> loot;
};

struct TrialDetail {
    QString boss_name;
    double event_time = 0.0;
    std::optional<int> tile_x;
    std::optional<int> tile_y;
    std::vector<TrialParticipantRow> participants; ///< the highest damage first
};

struct FortRow {
    QString file_name;
    double event_time = 0.0;
    int fort_level = 0;
    std::optional<int> tile_x;
    std::optional<int> tile_y;
    int damage_percent = 0;
    std::vector<LootEntry> loot;
};

struct FortBattleRound {
    int round_no = 0;
    std::optional<double> npc_type;
    std::optional<double> level;
    std::optional<double> damage_taken;
    std::optional<double> damage_dealt;
    bool is_fort_round = false;
    std::vector<LootEntry> loot;
};

/// The chain that was linked to a fort.
struct FortBattle {
    QString battle_file_name;
    std::optional<double> hero_id_1;
    std::optional<double> hero_id_2;
    QString player_name;
    std::vector<FortBattleRound> rounds;
};

} // namespace tally::data
