#pragma once

#include "sample_random.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace tally::sample {

/// Somebody in the game. Names and alliances are UTF-8 and may hold anything.
struct Player {
    double id = 0.0;
    QByteArray name;
    QByteArray alliance;
    QByteArray alliance_tag;
};

/// What every mail begins with.
struct MailHead {
    QByteArray id; ///< digits
    Player owner;
    double time = 0.0; ///< seconds since the Unix epoch, at most microseconds behind the point
    QByteArray box = "Report";
};

/// A barbarian on the map. The same `ct_id` in two mails means that it was met again.
struct Barbarian {
    double ct_id = 0.0;
    double npc_type = 0.0;
    std::optional<double> castle_level;
};

struct ChainRound {
    Barbarian enemy;
    double damage_dealt = 0.0;
    double damage_taken = 0.0;
    bool is_won = true; ///< it brought loot
    bool is_fort = false;
};

/// A chain of barbarian battles. `head.time` is its end.
struct Chain {
    MailHead head;
    double start = 0.0;
    double hero_1 = 0.0;
    double hero_2 = 0.0;
    double npc_btype = 1.0;
    bool is_square_rally = false;
    std::vector<ChainRound> rounds; ///< in the order of the fights
};

enum class FieldKind { Open, Rally, Garrison };

/// A tour with one or more attacks. `head.time` is its end.
struct FieldFight {
    MailHead head;
    double start = 0.0;
    FieldKind kind = FieldKind::Open;
    int attacks = 1;
    int ticks_each = 12; ///< entries of the damage log of one attack, each about 60 bytes
    int buffs_each = 6;  ///< entries of an army's buff list, each about 60 bytes
};

struct BossKill {
    MailHead head;
    QByteArray boss_name;
    double npc_type = 0.0;
    double npc_level = 0.0;
    std::vector<Player> participants;
};

struct FortReward {
    MailHead head;
    int level = 1;
    int damage_percent = 0;
};

QByteArray chain_mail(Random &random, const Chain &chain);
QByteArray field_mail(Random &random, const FieldFight &fight);
QByteArray trial_mail(Random &random, const BossKill &kill);
QByteArray fort_mail(Random &random, const FortReward &reward);

/// A mail that holds no report: messages, rewards, scout reports, and mails that look like a report
/// at first sight. About one in a hundred is no valid tree.
QByteArray other_mail(Random &random, const MailHead &head);

/// `length` fights of which some are lost, far below the damage of a fort round.
std::vector<ChainRound> random_rounds(Random &random, int length);
/// A barbarian that nobody has met yet.
Barbarian random_barbarian(Random &random);
Player random_player(Random &random);
/// The boss of the barbarian keep, killed by `participants`.
BossKill keep_kill(const MailHead &head, std::vector<Player> participants);
/// One of the bosses that are hunted in sessions.
BossKill canyon_kill(Random &random, const MailHead &head, std::vector<Player> participants);

/// One mail of each kind for tests, fuzzers and benchmarks. The same seed gives the same bytes.
QByteArray sample_chain_mail(quint32 seed);
QByteArray sample_field_mail(quint32 seed);
QByteArray sample_trial_mail(quint32 seed);
QByteArray sample_keep_mail(quint32 seed);
QByteArray sample_fort_mail(quint32 seed);
QByteArray sample_other_mail(quint32 seed);

/// A field fight of 12 attacks in full detail, about 200 KB.
QByteArray large_field_mail();

} // namespace tally::sample
