#include "data/store/trials.h"

#include "data/store/damage_rate.h"
#include "data/store/loot_sums.h"
#include "data/store/remembered.h"
#include "data/store/sql_conditions.h"
#include "data/store/sql_values.h"

#include <QHash>

namespace tally::data {

namespace {

SqlConditions kill_conditions(const QString &alias, const QStringList &bosses,
                              std::optional<double> from, std::optional<double> to)
{
    SqlConditions conditions;
    conditions.add_any_of(alias + QStringLiteral("boss_name IN (%1)"), bosses);
    conditions.add(alias + QStringLiteral("event_time >= ?"), from);
    conditions.add(alias + QStringLiteral("event_time <= ?"), to);
    return conditions;
}

QVariantList texts(const QStringList &list)
{
    return {list.cbegin(), list.cend()};
}

} // namespace

std::vector<TrialPlayerRow> trial_players(const StoreConnection &store, const QStringList &bosses,
                                          std::optional<double> from, std::optional<double> to)
{
    const SqlConditions conditions = kill_conditions(QStringLiteral("tr."), bosses, from, to);
    const auto compute = [&] {
        std::vector<TrialPlayerRow> players;
        auto rows = store.exec(QStringLiteral(R"sql(
            SELECT tp.player_name, MIN(tp.player_id) AS pid,
                   COUNT(*) AS n
            FROM trial_participants tp
            JOIN trial_reports tr ON tr.file_name = tp.file_name
            WHERE %1 AND tp.player_name IS NOT NULL
              AND LENGTH(TRIM(tp.player_name)) > 0
            GROUP BY tp.player_name
            ORDER BY n DESC, tp.player_name ASC)sql")
                                   .arg(conditions.sql()),
                               conditions.params);
        while (rows.next())
            players.push_back(
                {rows.value(0).toString(), number_in(rows.value(1)), rows.value(2).toInt()});
        return players;
    };
    return remembered<std::vector<TrialPlayerRow>>(
        store, QStringLiteral("trial_players"), QVariantList{conditions.sql()} + conditions.params,
        compute);
}

std::vector<TrialSession> trial_sessions(const StoreConnection &store, const QStringList &bosses,
                                         std::optional<double> from, std::optional<double> to,
                                         int gap_minutes)
{
    SqlConditions conditions = kill_conditions({}, bosses, from, to);
    conditions.add(QStringLiteral("event_time IS NOT NULL"));
    const double max_gap = gap_minutes * 60.0;
    std::vector<TrialSession> sessions;
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT file_name, boss_name, event_time
        FROM trial_reports
        WHERE %1
        ORDER BY event_time ASC)sql")
                               .arg(conditions.sql()),
                           conditions.params);
    while (rows.next()) {
        const double time = number_or_zero(rows.value(2));
        if (sessions.empty() || time - sessions.back().end > max_gap)
            sessions.push_back({.start = time});
        TrialSession &session = sessions.back();
        session.end = time;
        if (const QString boss = rows.value(1).toString(); !session.bosses.contains(boss))
            session.bosses << boss;
        session.file_names << rows.value(0).toString();
        ++session.kills;
    }
    return sessions;
}

std::vector<LootStat> trial_loot_stats(const StoreConnection &store, const QStringList &bosses,
                                       std::optional<double> from, std::optional<double> to,
                                       const QString &player, int *fights,
                                       const ItemLookup &item_of)
{
    SqlConditions conditions = kill_conditions(QStringLiteral("tr."), bosses, from, to);
    if (!player.isEmpty())
        conditions.add(QStringLiteral("tp.player_name = ?"), QVariant(player));
    const QString count = player.isEmpty()
                              ? QStringLiteral("SELECT COUNT(*) FROM trial_reports tr WHERE %1")
                              : QStringLiteral(R"sql(
        SELECT COUNT(DISTINCT tr.file_name)
        FROM trial_reports tr
        JOIN trial_participants tp ON tp.file_name = tr.file_name
        WHERE %1)sql");
    return remembered_loot(store, QStringLiteral(R"sql(
        SELECT tl.item_type, tl.item_subtype,
               SUM(tl.value) AS sztuki,
               COUNT(DISTINCT tr.file_name) AS bitwy
        FROM trial_loot tl
        JOIN trial_participants tp ON tp.id = tl.participant_id
        JOIN trial_reports tr ON tr.file_name = tp.file_name
        WHERE %1
        GROUP BY tl.item_type, tl.item_subtype)sql"),
                           count, conditions, fights, item_of);
}

std::vector<SessionPlayer> session_players(const StoreConnection &store, const QStringList &files)
{
    if (files.isEmpty())
        return {};
    const ReadSnapshot snapshot(store);
    const QString places = placeholders(files.size());
    std::vector<SessionPlayer> players;
    QHash<QString, std::size_t> place_of;
    {
        auto rows = store.exec(QStringLiteral(R"sql(
            SELECT player_name, MIN(player_id) AS pid, COUNT(*) AS kills
            FROM trial_participants
            WHERE file_name IN (%1)
            GROUP BY player_name
            ORDER BY kills DESC, player_name ASC)sql")
                                   .arg(places),
                               texts(files));
        while (rows.next()) {
            place_of.insert(rows.value(0).toString(), players.size());
            players.push_back(
                {rows.value(0).toString(), number_in(rows.value(1)), rows.value(2).toInt(), {}});
        }
    }
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT p.player_name, l.item_type, l.item_subtype,
               SUM(COALESCE(l.value, 0)) AS sv
        FROM trial_participants p
        JOIN trial_loot l ON l.participant_id = p.id
        WHERE p.file_name IN (%1)
        GROUP BY p.player_name, l.item_type, l.item_subtype
        ORDER BY p.player_name, l.item_type, l.item_subtype)sql")
                               .arg(places),
                           texts(files));
    while (rows.next()) {
        if (const auto place = place_of.constFind(rows.value(0).toString());
            place != place_of.cend())
            players[*place].loot.push_back({int_in(rows.value(1)).value_or(0),
                                            int_in(rows.value(2)).value_or(0),
                                            rows.value(3).toLongLong()});
    }
    return players;
}

std::vector<PlayerKill> player_kills(const StoreConnection &store, const QStringList &files,
                                     const QString &player)
{
    if (files.isEmpty())
        return {};
    const ReadSnapshot snapshot(store);
    std::vector<PlayerKill> kills;
    QHash<qint64, std::size_t> kill_of; // by participant
    QVariantList participants;
    {
        auto rows = store.exec(QStringLiteral(R"sql(
            SELECT r.file_name, r.event_time, r.boss_name, r.tile_x, r.tile_y,
                   p.id, p.damage_rate
            FROM trial_reports r
            JOIN trial_participants p ON p.file_name = r.file_name
            WHERE r.file_name IN (%1) AND p.player_name = ?
            ORDER BY r.event_time DESC)sql")
                                   .arg(placeholders(files.size())),
                               texts(files) + QVariantList{player});
        while (rows.next()) {
            kill_of.insert(rows.value(5).toLongLong(), kills.size());
            participants << rows.value(5);
            kills.push_back({rows.value(0).toString(),
                             rows.value(2).toString(),
                             number_or_zero(rows.value(1)),
                             int_in(rows.value(3)),
                             int_in(rows.value(4)),
                             number_or_zero(rows.value(6)),
                             {}});
        }
    }
    if (kills.empty())
        return kills;
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT participant_id, item_type, item_subtype, value
        FROM trial_loot
        WHERE participant_id IN (%1)
        ORDER BY id)sql")
                               .arg(placeholders(participants.size())),
                           participants);
    while (rows.next())
        kills[kill_of.value(rows.value(0).toLongLong())].loot.push_back(read_loot_entry(rows, 1));
    return kills;
}

std::optional<TrialDetail> trial_detail(const StoreConnection &store, const QString &file_name)
{
    const ReadSnapshot snapshot(store);
    TrialDetail detail;
    {
        auto row = store.exec(QStringLiteral(R"sql(
            SELECT boss_name, event_time, tile_x, tile_y
            FROM trial_reports
            WHERE file_name = ?
            LIMIT 1)sql"),
                              {file_name});
        if (!row.next())
            return std::nullopt;
        detail = {row.value(0).toString(),
                  number_or_zero(row.value(1)),
                  int_in(row.value(2)),
                  int_in(row.value(3)),
                  {}};
    }
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT id, player_name, player_id, damage_rate
        FROM trial_participants
        WHERE file_name = ?
        ORDER BY damage_rate DESC)sql"),
                           {file_name});
    while (rows.next())
        detail.participants.push_back({rows.value(0).toLongLong(),
                                       rows.value(1).toString(),
                                       number_in(rows.value(2)),
                                       as_percentage(number_or_zero(rows.value(3))),
                                       {}});
    auto select_loot =
        store.kept(QStringLiteral("SELECT item_type, item_subtype, value FROM trial_loot "
                                  "WHERE participant_id = ? ORDER BY id"));
    for (TrialParticipantRow &participant : detail.participants) {
        QSqlQuery &items = select_loot.exec({participant.id});
        while (items.next())
            participant.loot.push_back(read_loot_entry(items));
    }
    return detail;
}

} // namespace tally::data
