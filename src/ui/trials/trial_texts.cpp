#include "ui/trials/trial_texts.h"

#include "data/store/sql_values.h"
#include "ui/parts/format_count.h"
#include "ui/parts/local_time.h"
#include "ui/parts/value_texts.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace tally::ui {
namespace {

constexpr QStringView day_format = u"yyyy-MM-dd";
constexpr QStringView time_format = u"HH:mm";

struct SortRule {
    QStringView unit;
    QStringView word; ///< in the item's name; empty for any name
    int key;
};

constexpr int unknown_key = 99;
constexpr SortRule sort_rules[] = {
    {u"gems", u"", 0},         {u"min", u"UNIVERSAL", 10},
    {u"min", u"RESEARCH", 11}, {u"min", u"HEALING", 12},
    {u"min", u"BUILDING", 13}, {u"min", u"", 19},
    {u"chest", u"NORMAL", 20}, {u"chest", u"ADVANCED", 21},
    {u"chest", u"ELITE", 22},  {u"chest", u"", 29},
    {u"ap", u"", 30},          {u"key", u"SILVER", 41},
    {u"key", u"", 40},
};

int sort_key(const data::LootStat &stat)
{
    const QString unit = stat.unit.toLower();
    const QString name = stat.name.toUpper();
    const auto rule = std::ranges::find_if(sort_rules, [&](const SortRule &candidate) {
        return unit == candidate.unit && name.contains(candidate.word);
    });
    return rule == std::end(sort_rules) ? unknown_key : rule->key;
}

/// What a word in an item's name makes of it.
struct NameRule {
    QStringView word;
    const char16_t *shown;
    int per_legendary = 1; ///< of chests: how many are worth the highest one
};

constexpr NameRule speedup_names[] = {{u"UNIVERSAL", u"Universal"},
                                      {u"RESEARCH", u"Research"},
                                      {u"HEALING", u"Healing"},
                                      {u"BUILDING", u"Building"}};
constexpr NameRule chest_names[] = {{u"NORMAL", u"Normal chest", 256},
                                    {u"ADVANCED", u"Advanced chest", 64},
                                    {u"ELITE", u"Elite chest", 16},
                                    {u"EPIC", u"Epic chest", 4}};
constexpr NameRule other_names[] = {{u"STARLIGHT SCULPTURE", u"Sculpture"},
                                    {u"ENHANCED DEFENSE", u"Defense 5%"},
                                    {u"ENHANCED ATTACK", u"Attack 5%"}};

template <std::size_t size>
const NameRule *rule_for(const NameRule (&rules)[size], const QString &name)
{
    const QString upper = name.toUpper();
    const auto rule = std::ranges::find_if(
        rules, [&upper](const NameRule &candidate) { return upper.contains(candidate.word); });
    return rule == std::end(rules) ? nullptr : &*rule;
}

QString name_by(const NameRule *rule, const QString &name)
{
    return rule ? QString::fromUtf16(rule->shown) : name;
}

LootCardTexts speedup_texts(const data::LootStat &stat)
{
    const double minutes = stat.pieces * stat.unit_value;
    return {name_by(rule_for(speedup_names, stat.name), stat.name),
            QStringLiteral("%1 H / %2 D")
                .arg(minutes / 60.0, 0, 'f', 1)
                .arg(minutes / 1440.0, 0, 'f', 2)};
}

LootCardTexts chest_texts(const data::LootStat &stat)
{
    const NameRule *rule = rule_for(chest_names, stat.name);
    const double legendary = static_cast<double>(stat.pieces) / (rule ? rule->per_legendary : 1);
    return {name_by(rule, stat.name),
            QStringLiteral("%1 (%2 L)").arg(format_count(stat.pieces)).arg(legendary, 0, 'f', 3)};
}

double action_points(const data::LootStat &stat)
{
    const QString name = stat.name.toUpper();
    if (stat.unit_value >= 2.0)
        return stat.unit_value;
    if (name.contains(u"BASIC"))
        return 100.0;
    return name.contains(u"EMERGENCY") ? 50.0 : stat.unit_value;
}

LootCardTexts other_texts(const data::LootStat &stat)
{
    QString name = name_by(rule_for(other_names, stat.name), stat.name);
    if (name.isEmpty())
        name = QStringLiteral("Type=%1/Sub=%2")
                   .arg(data::to_int(stat.item_type).value_or(0))
                   .arg(data::to_int(stat.item_subtype).value_or(0));
    return {name, format_count(stat.pieces)};
}

} // namespace

QString session_time_text(const data::TrialSession &session)
{
    const QString full = QStringLiteral("%1 %2").arg(day_format, time_format);
    if (local_date(session.start) != local_date(session.end))
        return QStringLiteral("%1 → %2").arg(local_time_text(session.start, full),
                                             local_time_text(session.end, full));
    const QString time = time_format.toString();
    return QStringLiteral("%1  %2–%3")
        .arg(local_time_text(session.start, day_format.toString()),
             local_time_text(session.start, time), local_time_text(session.end, time));
}

LootCardTexts loot_card_texts(const data::LootStat &stat)
{
    const QString unit = stat.unit.toLower();
    if (unit == u"gems")
        return {QStringLiteral("Gem"), format_count(stat.total_value)};
    if (unit == u"min")
        return speedup_texts(stat);
    if (unit == u"chest")
        return chest_texts(stat);
    if (unit == u"ap")
        return {QStringLiteral("AP Recovery"),
                format_count(data::saturated<qint64>(stat.pieces * action_points(stat) + 0.5))};
    return other_texts(stat);
}

std::vector<data::LootStat> loot_card_order(std::vector<data::LootStat> stats)
{
    std::erase_if(stats, [](const data::LootStat &stat) { return stat.pieces <= 0; });
    const auto place = [](const data::LootStat &stat) {
        return std::tuple(sort_key(stat), -stat.pieces, stat.item_type, stat.item_subtype);
    };
    std::ranges::sort(stats, {}, place);
    return stats;
}

ItemRow session_row(const data::TrialSession &session)
{
    QStringList bosses;
    std::ranges::transform(session.bosses, std::back_inserter(bosses), name_text);
    return {.key = session.file_names.value(0),
            .cells = {left_cell(session_time_text(session)),
                      left_cell(bosses.join(QStringLiteral(" + "))),
                      centred_cell(QString::number(session.kills), session.kills)}};
}

ItemRow player_row(const data::SessionPlayer &player)
{
    return {.key = player.name,
            .cells = {left_cell(name_text(player.name)),
                      centred_cell(QString::number(player.kills), player.kills)},
            .loot = player.loot};
}

ItemRow kill_row(const data::PlayerKill &kill)
{
    return {.key = kill.file_name,
            .cells = {left_cell(
                          local_time_text(kill.event_time, QStringLiteral("yyyy-MM-dd HH:mm:ss"))),
                      left_cell(name_text(kill.boss_name)),
                      centred_cell(tile_text(kill.tile_x, kill.tile_y)),
                      right_cell(QStringLiteral("%1%").arg(kill.damage_rate, 0, 'f', 2),
                                 kill.damage_rate)},
            .loot = strip_items(kill.loot)};
}

QString players_caption(const data::TrialSession &session, std::size_t players)
{
    return QStringLiteral("Session %1 (%2 players · %3 kills — double-click a player for per-kill "
                          "details):")
        .arg(session_time_text(session))
        .arg(players)
        .arg(session.kills);
}

} // namespace tally::ui
