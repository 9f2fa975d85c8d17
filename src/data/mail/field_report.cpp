#include "data/mail/field_report.h"

#include "data/mail/hero_texts.h"
#include "data/mail/key_marker.h"
#include "data/mail/mail_value.h"
#include "data/mail/refusal.h"
#include "data/mail/tree_reading.h"

#include <optional>

namespace tally::data {
namespace {

using Convert = QVariant (*)(const QVariant &);

QVariant as_it_is(const QVariant &value)
{
    return value;
}

QVariant as_text(const QVariant &value)
{
    return value.toString();
}

QVariant as_flag(const QVariant &value)
{
    return value.toBool() ? 1 : 0;
}

QVariant as_score(const QVariant &value)
{
    return int_of(value).value_or(0);
}

QVariant as_number(const QVariant &value)
{
    return value.toDouble();
}

template <QString (*Format)(const QVariant &)>
QVariant formatted(const QVariant &value)
{
    return Format(value);
}

/// Fills one column from one key of a map.
struct ColumnRule {
    QStringView column; ///< of a pair of columns the part behind "my_" or "enemy_"
    QStringView key;
    Convert convert;
};

/// Read from "SelfChar" into the "my" columns and from "CIdt" into the "enemy" columns.
constexpr ColumnRule army_rules[] = {
    {u"hid", u"HId", as_it_is},
    {u"hid2", u"HId2", as_it_is},
    {u"ct", u"CT", as_it_is},
    {u"hlv", u"HLv", as_it_is},
    {u"hlv2", u"HLv2", as_it_is},
    {u"hst", u"HSt", as_it_is},
    {u"hst2", u"HSt2", as_it_is},
    {u"haw", u"HAw", as_flag},
    {u"haw2", u"HAw2", as_flag},
    {u"cosid", u"COSId", as_it_is},
    {u"formation", u"HFMs", as_it_is},
    {u"hss", u"HSS", formatted<format_skills>},
    {u"hss2", u"HSS2", formatted<format_skills>},
    {u"heq", u"HEq", as_text},
    {u"heq2", u"HEq2", as_text},
    {u"hwbs", u"HWBs", formatted<format_buffs>},
    {u"hwbs2", u"HWBs2", formatted<format_buffs>},
    {u"inscriptions", u"HWBs", formatted<format_inscriptions>},
    {u"inscriptions2", u"HWBs2", formatted<format_inscriptions>},
};

/// Read from "Damage" into the "my" columns and from "Kill" into the "enemy" columns.
constexpr ColumnRule score_rules[] = {
    {u"kill_score", u"KillScore", as_score},
    {u"death", u"Death", as_score},
    {u"power", u"Power", as_score},
    {u"bad_hurt", u"BadHurt", as_score},
    {u"hurt", u"Hurt", as_score},
};

constexpr ColumnRule self_rules[] = {
    {u"player_id", u"PId", as_it_is},
    {u"player_name", u"PName", as_text},
    {u"alliance_name", u"Abbr", as_text},
    {u"is_rally", u"IsRally", as_flag},
};

constexpr ColumnRule enemy_rules[] = {
    {u"enemy_id", u"PId", as_it_is},
    {u"enemy_name", u"PName", as_text},
    {u"enemy_alliance", u"Abbr", as_text},
    {u"enemy_npc_type", u"NpcType", as_number},
    {u"enemy_npc_btype", u"NpcBType", as_number},
};

constexpr ColumnRule mail_rules[] = {
    {u"email_id", u"id", as_it_is},
    {u"email_box", u"box", as_text},
    {u"email_type", u"type", as_text},
};

template <size_t N>
void apply(QVariantMap &row, const ColumnRule (&rules)[N], const QVariantMap &source,
           const QString &prefix = {})
{
    for (const ColumnRule &rule : rules)
        row.insert(prefix + literal(rule.column), rule.convert(value_of(source, rule.key)));
}

const QString mine = QStringLiteral("my_");
const QString enemys = QStringLiteral("enemy_");

/// The columns that all attacks of a mail share.
QVariantMap mail_columns(const QVariantMap &root, const QVariantMap &content)
{
    const QVariantMap self = map_of(content, u"SelfChar");
    QVariantMap row;
    apply(row, mail_rules, root);
    row.insert(QStringLiteral("email_receiver"),
               text_of(root, u"receiver").remove(QStringLiteral("player_")));
    row.insert(QStringLiteral("email_role"), value_of(content, u"Role"));
    const QVariant tour = value_of(self, u"CTK");
    row.insert(QStringLiteral("tour_id"), tour.isNull() ? value_of(root, u"id") : tour);
    row.insert(QStringLiteral("is_kvk"), as_flag(value_of(content, u"isConquerSeason")));
    apply(row, self_rules, self);
    apply(row, army_rules, self, mine);
    return row;
}

double attack_id(const QString &key, int attack_seq)
{
    const double number = number_of_key(key);
    return number == 0.0 && key != u"0" ? attack_seq : number;
}

/// When the attack ended, in seconds since the Unix epoch: its "Ets" counts game ticks of a second
/// each, and the mail gives one moment both in seconds ("Bts") and in ticks ("Btk"). Invalid if the
/// mail holds none of the three.
QVariant end_date(const QVariantMap &content, const QVariantMap &attack)
{
    const double start = value_of(content, u"Bts").toDouble();
    const double start_tick = value_of(content, u"Btk").toDouble();
    bool has_tick = false;
    const double tick = value_of(attack, u"Ets").toDouble(&has_tick);
    if (!has_tick && start == 0.0 && start_tick == 0.0)
        return {};
    return tick + start - start_tick;
}

void add_attack_columns(QVariantMap &row, const QVariantMap &content, const QVariantMap &attack)
{
    const QVariant mail_time = value_of(content, u"Ets");
    row.insert(QStringLiteral("email_time"),
               mail_time.isNull() ? value_of(attack, u"Ets") : mail_time);
    row.insert(QStringLiteral("end_date"), end_date(content, attack));
    const QVariantMap enemy = map_of(attack, u"CIdt");
    apply(row, enemy_rules, enemy);
    apply(row, army_rules, enemy, enemys);
    apply(row, score_rules, map_of(attack, u"Damage"), mine);
    apply(row, score_rules, map_of(attack, u"Kill"), enemys);
}

bool is_map(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantMap;
}

qsizetype text_size(const QVariantMap &row)
{
    qsizetype size = 0;
    for (const QVariant &value : row) {
        if (value.typeId() == QMetaType::QString)
            size += static_cast<const QString *>(value.constData())->size();
    }
    return size;
}

std::optional<FieldReport> field_of(const QVariantMap &root)
{
    if (find_first(root, QStringLiteral("type")).toString() != u"Battle")
        return std::nullopt;
    const QVariantMap content = find_first(root, QStringLiteral("content")).toMap();
    const QVariantMap attacks = map_of(content, u"Attacks");
    QStringList keys = keys_by_number(attacks);
    keys.removeIf([&attacks](const QString &key) { return !is_map(attacks.value(key)); });
    if (keys.isEmpty())
        return std::nullopt;
    if (keys.size() > max_attacks)
        throw OversizedMail(QStringLiteral("more than %1 attacks").arg(max_attacks));

    const QVariantMap shared = mail_columns(root, content);
    FieldReport rows;
    qsizetype row_text = 0;
    for (const QString &key : keys) {
        const int attack_seq = static_cast<int>(rows.size()) + 1;
        QVariantMap row = shared;
        row.insert(QStringLiteral("n_attacks"), static_cast<int>(keys.size()));
        row.insert(QStringLiteral("attack_seq"), attack_seq);
        row.insert(QStringLiteral("attack_id"), attack_id(key, attack_seq));
        add_attack_columns(row, content, attacks.value(key).toMap());
        row_text += text_size(row);
        if (row_text > max_row_text)
            throw OversizedMail(
                QStringLiteral("more than %1 characters of text in its rows").arg(max_row_text));
        rows.append(row);
    }
    return rows;
}

} // namespace

std::optional<FieldReport> parse_field(QByteArrayView mail)
{
    static const QByteArray attacks_key = key_marker("Attacks");
    if (mail.isEmpty() || holds(mail, "NpcKillLoot") || !holds(mail, attacks_key))
        return std::nullopt;
    return unless_damaged([&] { return field_of(parse_bytes(mail)); });
}

std::optional<FieldReport> parse_field(const QString &path)
{
    return report_in_file(path, [](QByteArrayView mail) { return parse_field(mail); });
}

} // namespace tally::data
