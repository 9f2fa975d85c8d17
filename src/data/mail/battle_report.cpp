#include "data/mail/battle_report.h"

#include "data/mail/battle_rounds.h"
#include "data/mail/key_marker.h"
#include "data/mail/mail_value.h"
#include "data/mail/refusal.h"

#include <QVariant>

#include <algorithm>

namespace tally::data {
namespace {

// Barbarians of these types tell their level by the type itself: 150009 is level 41.
constexpr double first_leveled_type = 150009.0;
constexpr double last_leveled_type = 150050.0;
constexpr double type_of_level_zero = 149968.0;

// How far behind "SelfChar" the player's own facts lie.
constexpr qsizetype hero_reach = 20000;
constexpr qsizetype player_reach = 20480;

/// Where keys are looked for. Their values may reach beyond its end, not beyond the mail's.
struct Stretch {
    QByteArrayView mail;
    qsizetype begin = 0;
    qsizetype size = 0;

    QByteArrayView bytes() const { return mail.sliced(begin, std::min(size, mail.size() - begin)); }
};

Stretch whole(QByteArrayView mail)
{
    return {mail, 0, mail.size()};
}

/// Offset in the mail of what stands behind the first marker of a key, or -1.
qsizetype value_pos(const Stretch &stretch, QByteArrayView key)
{
    const QByteArray marker = key_marker(key);
    const qsizetype offset = find_offset(stretch.bytes(), marker);
    return offset < 0 ? -1 : stretch.begin + offset + marker.size();
}

std::optional<double> first_number(const Stretch &stretch, QByteArrayView key)
{
    return double_at(stretch.mail, value_pos(stretch, key));
}

QString first_text(const Stretch &stretch, QByteArrayView key)
{
    constexpr quint32 max_name_length = 200;
    const auto text = text_at(stretch.mail, value_pos(stretch, key), max_name_length);
    return text ? QString::fromUtf8(*text) : QString();
}

std::optional<double> number_of(const QVariant &value)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

std::optional<double> level_in(const BattleRound &round, std::optional<double> mail_level,
                               const LevelOf &level_of)
{
    if (!round.npc_type)
        return mail_level;
    if (*round.npc_type >= first_leveled_type && *round.npc_type <= last_leveled_type)
        return *round.npc_type - type_of_level_zero;
    const auto level = level_of(*round.npc_type);
    return level ? std::optional<double>(*level) : mail_level;
}

void complete_rounds(std::vector<BattleRound> &rounds, std::optional<double> mail_level,
                     const LevelOf &level_of)
{
    const auto with_btype =
        std::find_if(rounds.begin(), rounds.end(),
                     [](const BattleRound &round) { return round.npc_btype.has_value(); });
    const auto btype = with_btype != rounds.end() ? with_btype->npc_btype : std::optional<double>();
    for (BattleRound &round : rounds) {
        if (!round.npc_btype)
            round.npc_btype = btype;
        if (!round.level)
            round.level = level_in(round, mail_level, level_of);
    }
}

bool is_unix_time(double seconds)
{
    return seconds > 1'500'000'000.0 && seconds < 3'000'000'000.0;
}

/// The times that stand behind keys of the plain name "Time".
std::vector<double> unix_times(QByteArrayView mail)
{
    const QByteArray marker = key_marker("Time");
    std::vector<double> times;
    for (const qsizetype offset : find_all_offsets(mail, marker)) {
        const auto time = double_at(mail, offset + marker.size());
        if (time && is_unix_time(*time))
            times.push_back(*time);
    }
    return times;
}

void read_chain_times(BattleReport &report, QByteArrayView mail)
{
    report.chain_start_time = first_number(whole(mail), "Bts");
    if (const auto microseconds = first_number(whole(mail), "time"))
        report.chain_end_time = *microseconds / 1e6;
    if (!report.chain_start_time || !report.chain_end_time) {
        const std::vector<double> times = unix_times(mail);
        const auto [smallest, largest] = std::minmax_element(times.begin(), times.end());
        if (!times.empty() && !report.chain_start_time)
            report.chain_start_time = *smallest;
        if (!times.empty() && !report.chain_end_time)
            report.chain_end_time = *largest;
    }
    for (auto *time : {&report.chain_start_time, &report.chain_end_time}) {
        if (*time && !is_unix_time(**time))
            time->reset();
    }
}

void read_player(BattleReport &report, QByteArrayView mail)
{
    const qsizetype self = value_pos(whole(mail), "SelfChar");
    if (self < 0)
        return;
    const Stretch player{mail, self, player_reach};
    report.player_id = first_number(player, "PId");
    report.player_name = first_text(player, "PName");
    report.alliance_name = first_text(player, "AName");
    if (self == mail.size() || mail[self] != '\x05')
        return;
    const Stretch heroes{mail, self, hero_reach};
    report.hero_id_1 = first_number(heroes, "HId");
    report.hero_id_2 = first_number(heroes, "HId2");
}

bool is_square_rally(QByteArrayView mail)
{
    constexpr quint32 max_rally_length = 256;
    const QByteArray marker = key_marker("IsRally");
    const auto offsets = find_all_offsets(mail, marker);
    return std::any_of(offsets.begin(), offsets.end(), [&](qsizetype offset) {
        const auto text = text_at(mail, offset + marker.size(), max_rally_length);
        return text && text->endsWith("SquareRally");
    });
}

/// What the tree tells. It is not kept while the rounds are read, for both can be large.
struct TreeFacts {
    std::optional<double> level;
    std::optional<double> result;
    std::optional<double> time;
};

std::optional<TreeFacts> tree_facts(QByteArrayView mail)
{
    const QVariantMap root = parse_bytes(mail);
    if (find_first(root, QStringLiteral("type")).toString() != u"Battle")
        return std::nullopt;
    return TreeFacts{.level = number_of(root.value(QStringLiteral("level"))),
                     .result = number_of(find_first(root, QStringLiteral("result"))),
                     .time = number_of(find_first(root, QStringLiteral("time")))};
}

std::optional<BattleReport> battle_of(QByteArrayView mail, const LevelOf &level_of)
{
    const auto facts = tree_facts(mail);
    if (!facts)
        return std::nullopt;
    BattleReport report;
    report.rounds = read_battle_rounds(mail);
    if (report.rounds.empty())
        return std::nullopt;
    complete_rounds(report.rounds, facts->level, level_of);
    report.result = facts->result;
    report.report_time = facts->time;
    read_chain_times(report, mail);
    read_player(report, mail);
    report.is_square_rally = is_square_rally(mail);
    return report;
}

} // namespace

std::optional<BattleReport> parse_battle(QByteArrayView mail, const LevelOf &level_of)
{
    static const QByteArray npc_type_key = key_marker("NpcType");
    if (!holds(mail, npc_type_key))
        return std::nullopt;
    return unless_damaged([&] { return battle_of(mail, level_of); });
}

} // namespace tally::data
