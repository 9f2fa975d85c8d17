#include "data/store/damage_rate.h"
#include "data/store/remembered.h"
#include "data/store/sql_conditions.h"
#include "data/store/sql_values.h"

namespace tally::data {

namespace {

// The boss of the barbarian keep goes by a name of its own in each language of the game; its types
// are the same in all of them.
const QStringList keep_bosses = {QStringLiteral("Bloodfist Bargha"),
                                 QStringLiteral("Bargha Krwawa Pięść")};
constexpr double keep_types[] = {102000155.0, 401000098.0};

SqlConditions keep_conditions(double player_id)
{
    SqlConditions conditions;
    conditions.add(QStringLiteral("tp.player_id = ?"), QVariant(player_id));
    conditions.add_any_of(QStringLiteral("(tr.boss_name IN (%1) OR tr.npc_type IN (%2))")
                              .arg(QStringLiteral("%1"), placeholders(std::size(keep_types))),
                          keep_bosses);
    for (const double type : keep_types)
        conditions.params << type;
    return conditions;
}

} // namespace

std::optional<double> TallyDb::keep_player() const
{
    const auto compute = [&]() -> std::optional<double> {
        const bool sliced = slices_complete();
        for (const QString &sql :
             {QStringLiteral("SELECT player_id FROM %1 WHERE player_id IS NOT NULL "
                             "GROUP BY player_id ORDER BY %2 DESC LIMIT 1")
                  .arg(chain_source().table, sliced ? u"SUM(rounds)" : u"COUNT(*)"),
              QStringLiteral("SELECT player_id FROM trial_participants WHERE player_id IS NOT NULL "
                             "GROUP BY player_id ORDER BY COUNT(*) DESC LIMIT 1")}) {
            auto row = exec_prepared(connection(), sql);
            if (row.next())
                return number_in(row.value(0));
        }
        return std::nullopt;
    };
    return remembered<std::optional<double>>(QStringLiteral("keep_player"), {}, compute);
}

std::vector<KeepKill> TallyDb::keep_kills(double player_id, int limit) const
{
    const SqlConditions conditions = keep_conditions(player_id);
    std::vector<KeepKill> kills;
    auto rows = exec_prepared(connection(),
                              QStringLiteral(R"sql(
        SELECT tr.file_name, tr.boss_name, tr.event_time,
               tr.tile_x, tr.tile_y, tp.damage_rate
        FROM trial_reports tr
        JOIN trial_participants tp ON tp.file_name = tr.file_name
        WHERE %1
        ORDER BY tr.event_time DESC
        LIMIT ?)sql")
                                  .arg(conditions.sql()),
                              conditions.params + QVariantList{limit});
    while (rows.next())
        kills.push_back({rows.value(0).toString(), rows.value(1).toString(),
                         number_or_zero(rows.value(2)), int_in(rows.value(3)),
                         int_in(rows.value(4)), as_percentage(number_or_zero(rows.value(5)))});
    return kills;
}

std::optional<double> TallyDb::last_keep_kill(double player_id) const
{
    const SqlConditions conditions = keep_conditions(player_id);
    const auto compute = [&]() -> std::optional<double> {
        auto row = exec_prepared(connection(),
                                 QStringLiteral(R"sql(
            SELECT MAX(tr.event_time)
            FROM trial_reports tr
            JOIN trial_participants tp ON tp.file_name = tr.file_name
            WHERE %1)sql")
                                     .arg(conditions.sql()),
                                 conditions.params);
        const auto time = row.next() ? number_in(row.value(0)) : std::nullopt;
        return time.value_or(0.0) > 0.0 ? time : std::nullopt;
    };
    return remembered<std::optional<double>>(QStringLiteral("last_keep_kill"), conditions.params,
                                             compute);
}

} // namespace tally::data
