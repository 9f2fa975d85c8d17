#pragma once

#include "data/mail/loot_entry.h"

#include <QByteArrayView>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace tally::data {

/// One fight of a barbarian chain.
struct BattleRound {
    std::optional<double> npc_btype;
    std::optional<double> npc_type;
    std::optional<double> level;
    std::optional<double> npc_ctid; ///< rounds with the same value fought the same barbarian
    std::optional<double> disappear_tick;
    std::optional<double> damage_taken;
    std::optional<double> damage_dealt;
    std::optional<double> ets;
    qint32 is_fort_round = 0; ///< 0 or 1
    std::vector<LootEntry> loot;
};

/// Everything one chain mail tells about a run of barbarian fights.
/// Absent numbers reach the store as NULL. Times are seconds since the Unix epoch, except
/// `report_time`, which is kept as the mail writes it.
struct BattleReport {
    std::optional<double> result;
    std::optional<double> report_time;
    std::optional<double> chain_start_time;
    std::optional<double> chain_end_time;
    std::optional<double> hero_id_1;
    std::optional<double> hero_id_2;
    std::optional<double> player_id;
    QString player_name;
    QString alliance_name;
    bool is_square_rally = false;
    std::vector<BattleRound> rounds; ///< sorted: largest `ets` first
};

/// The level of a barbarian by its type, as far as it is known.
using LevelOf = std::function<std::optional<int>(double npc_type)>;

/// Rebuilds the chain from the raw bytes of one mail file. Types whose level the game does not fix
/// are looked up with `level_of`.
/// \return nothing if the bytes are no usable battle mail
/// \throws OversizedMail beyond the bounds of a mail, and nothing else on bad input
std::optional<BattleReport> parse_battle(QByteArrayView mail, const LevelOf &level_of);

/// Bounds that no mail of the game comes near. Rounds may share the bytes of their loot, so that
/// without them a small file could stand for any number of entries.
inline constexpr size_t max_rounds = 100'000;
inline constexpr size_t max_loot_of_round = 4'096;
inline constexpr size_t max_loot_of_mail = 300'000; ///< what the store takes in a few seconds
inline constexpr int max_pairs_of_loot = 64;        ///< keys with a number in one entry

/// Reads the loot map whose tag stands at `pos`. Reading ends at the first byte that does not fit,
/// with the entries completed so far.
/// \throws OversizedMail beyond the bounds of a round
std::vector<LootEntry> read_loot(QByteArrayView bytes, qsizetype pos);

} // namespace tally::data
