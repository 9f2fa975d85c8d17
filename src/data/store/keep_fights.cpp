#include "data/store/keep_fights.h"

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

std::optional<double> keep_player(const StoreConnection &store)
{
    const auto compute = [&]() -> std::optional<double> {
        for (const char *sql : {"SELECT player_id FROM chain_slices WHERE player_id IS NOT NULL "
                                "GROUP BY player_id ORDER BY SUM(rounds) DESC LIMIT 1",
                                "SELECT player_id FROM trial_participants WHERE player_id IS NOT "
                                "NULL "
                                "GROUP BY player_id ORDER BY COUNT(*) DESC LIMIT 1"}) {
            auto row = store.exec(QString::fromLatin1(sql));
            if (row.next())
                return number_in(row.value(0));
        }
        return std::nullopt;
    };
    return remembered_of_slices<std::optional<double>>(store, QStringLiteral("keep_player"), {},
                                                       compute);
}

std::vector<KeepKill> keep_kills(const StoreConnection &store, double player_id, int limit)
{
    const SqlConditions conditions = keep_conditions(player_id);
    const QVariantList params = conditions.params + QVariantList{limit};
    const auto compute = [&] {
        std::vector<KeepKill> kills;
        auto rows = store.exec(QStringLiteral(R"sql(
            SELECT tr.file_name, tr.boss_name, tr.event_time,
                   tr.tile_x, tr.tile_y, tp.damage_rate
            FROM trial_reports tr
            JOIN trial_participants tp ON tp.file_name = tr.file_name
            WHERE %1
            ORDER BY tr.event_time DESC
            LIMIT ?)sql")
                                   .arg(conditions.sql()),
                               params);
        while (rows.next())
            kills.push_back({rows.value(0).toString(), rows.value(1).toString(),
                             number_or_zero(rows.value(2)), int_in(rows.value(3)),
                             int_in(rows.value(4)), as_percentage(number_or_zero(rows.value(5)))});
        return kills;
    };
    return remembered<std::vector<KeepKill>>(store, QStringLiteral("keep_kills"), params, compute);
}

std::optional<double> last_keep_kill(const StoreConnection &store, double player_id)
{
    const SqlConditions conditions = keep_conditions(player_id);
    const auto compute = [&]() -> std::optional<double> {
        auto row = store.exec(QStringLiteral(R"sql(
            SELECT MAX(tr.event_time)
            FROM trial_reports tr
            JOIN trial_participants tp ON tp.file_name = tr.file_name
            WHERE %1)sql")
                                  .arg(conditions.sql()),
                              conditions.params);
        const auto time = row.next() ? number_in(row.value(0)) : std::nullopt;
        return time.value_or(0.0) > 0.0 ? time : std::nullopt;
    };
    return remembered<std::optional<double>>(store, QStringLiteral("last_keep_kill"),
                                             conditions.params, compute);
}

} // namespace tally::data
