#include "ui/forts/fort_texts.h"

#include "data/master/master_cache.h"
#include "data/store/sql_values.h"
#include "ui/parts/local_time.h"

namespace tally::ui {
namespace {

constexpr int primary_attacker_percent = 90;

QString time_text(const data::FortRow &fort)
{
    return local_time_text(fort.event_time, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString hero_text(std::optional<double> id)
{
    if (!id)
        return QStringLiteral("—");
    const QString name = data::MasterCache::instance().hero_name(id);
    return name.isEmpty() ? QStringLiteral("H%1").arg(data::saturated<qint64>(*id)) : name;
}

QString target_text(const data::FortBattleRound &round)
{
    if (round.is_fort_round)
        return QStringLiteral("🏰 FORT (Lv %1)").arg(data::saturated(round.level.value_or(0.0)));
    return round.level ? QStringLiteral("Barb Lv %1").arg(data::saturated(*round.level))
                       : QStringLiteral("Barb");
}

RowCell number_cell(std::optional<double> number)
{
    if (!number)
        return right_cell(QStringLiteral("—"), QString());
    return right_cell(QString::number(data::saturated<qint64>(*number)), *number);
}

} // namespace

ItemRow fort_row(const data::FortRow &fort)
{
    return {
        .key = fort.file_name,
        .cells = {left_cell(time_text(fort)),
                  centred_cell(QStringLiteral("Lv %1").arg(fort.fort_level), fort.fort_level),
                  centred_cell(tile_text(fort.tile_x, fort.tile_y)),
                  right_cell(QStringLiteral("%1%").arg(fort.damage_percent), fort.damage_percent)},
        .loot = strip_items(fort.loot)};
}

QString reports_caption(std::size_t reports)
{
    return QStringLiteral("Reports (%1) — double-click a row for battle details:").arg(reports);
}

QString fort_headline(const data::FortRow &fort)
{
    const QString role = fort.damage_percent >= primary_attacker_percent
                             ? QStringLiteral("primary attacker")
                             : QStringLiteral("supporter");
    return QStringLiteral("<h3>Barbarian Fort Lv %1 — %2</h3><b>Time:</b> %3 &nbsp;&nbsp; "
                          "<b>Tile:</b> %4 &nbsp;&nbsp; <b>Damage:</b> %5%")
        .arg(QString::number(fort.fort_level), role, time_text(fort),
             tile_text(fort.tile_x, fort.tile_y), QString::number(fort.damage_percent));
}

QString battle_headline(const std::optional<data::FortBattle> &battle)
{
    if (!battle)
        return QStringLiteral(
            "<h3>Battle detail</h3><i>No paired battle report found — either the Chain mail has "
            "rotated out of the mailcache, or it wasn't imported yet. Re-import the mailcache from "
            "File → Reimport to try again.</i>");
    constexpr int shown_of_file_name = 19;
    const QString player =
        battle->player_name.isEmpty() ? QStringLiteral("—") : battle->player_name.toHtmlEscaped();
    return QStringLiteral("<h3>Battle detail — chain %1</h3><b>Player:</b> %2 &nbsp;&nbsp; "
                          "<b>Commanders:</b> %3 + %4")
        .arg(battle->battle_file_name.right(shown_of_file_name).toHtmlEscaped(), player,
             hero_text(battle->hero_id_1).toHtmlEscaped(),
             hero_text(battle->hero_id_2).toHtmlEscaped());
}

ItemRow battle_round_row(const data::FortBattleRound &round)
{
    return {.key = QString::number(round.round_no),
            .cells = {centred_cell(QString::number(round.round_no), round.round_no),
                      left_cell(target_text(round)), number_cell(round.damage_dealt),
                      number_cell(round.damage_taken)},
            .loot = strip_items(round.loot)};
}

} // namespace tally::ui
