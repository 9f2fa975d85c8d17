#include "data/store/report_writes.h"

#include "data/mail/battle_report.h"
#include "data/mail/fort_report.h"
#include "data/mail/trial_report.h"
#include "data/store/field_columns.h"
#include "data/store/round_slicer.h"
#include "data/store/slice_upkeep.h"
#include "data/store/sql_values.h"
#include "data/store/store_connection.h"

#include <QMutexLocker>
#include <QStringList>
#include <QVariantMap>

namespace tally::data {

namespace {

const QStringList &field_column_names()
{
    static const QStringList names = [] {
        QStringList all;
        for (const FieldColumn &column : field_columns)
            all << QString::fromLatin1(column.name);
        return all;
    }();
    return names;
}

const QString &field_insert()
{
    static const QString sql =
        QStringLiteral("INSERT OR FAIL INTO field_reports (%1) VALUES (%2)")
            .arg(field_column_names().join(u','),
                 QStringList(field_column_names().size(), QStringLiteral("?")).join(u','));
    return sql;
}

QVariantList loot_row(const QVariant &owner, const LootEntry &item)
{
    return {owner, nullable(to_int(item.item_type)), nullable(to_int(item.item_subtype)),
            nullable(to_int(item.value))};
}

} // namespace

void insert_report(const StoreConnection &store, const QString &file_name,
                   const BattleReport &report, double file_mtime, double imported_at)
{
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    store.kept(QStringLiteral("DELETE FROM loot WHERE file_name = ?")).exec({file_name});
    auto delete_rounds = store.kept(QStringLiteral("DELETE FROM reports WHERE file_name = ?"));
    // The old rounds may have been marked by a fort that was linked to them; the new ones must be
    // marked again, so that fort is linked anew.
    if (delete_rounds.exec({file_name}).numRowsAffected() > 0)
        store.exec(QStringLiteral("UPDATE fort_reports SET battle_file_name = NULL "
                                  "WHERE battle_file_name = ?"),
                   {file_name});
    // OR FAIL: with a trigger, the default lets SQLite keep a journal for each statement's undo,
    // which the transaction's makes needless.
    auto insert_round = store.kept(QStringLiteral(R"sql(
        INSERT OR FAIL INTO reports
          (file_name, round_no, npc_btype, npc_type, level, result, report_time,
           file_mtime, imported_at, chain_start_time, chain_end_time,
           hero_id_1, hero_id_2, npc_ctid, disappear_tick, damage_taken, damage_dealt, ets,
           player_id, player_name, alliance_name, is_fort_round, is_free_ap)
        VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?))sql"));
    auto insert_loot = store.kept(QStringLiteral("INSERT OR FAIL INTO loot (file_name, "
                                                 "round_no, item_type, item_subtype, value) "
                                                 "VALUES (?,?,?,?,?)"));
    ChainSlicer slicer;
    int round_no = 0;
    int loot_rows = 0;
    for (const BattleRound &round : report.rounds) {
        const int fort_round = round.is_fort_round != 0 ? 1 : 0;
        const int free_ap = report.is_square_rally && fort_round == 0 ? 1 : 0;
        const QVariant row = insert_round
                                 .exec({file_name,
                                        round_no,
                                        nullable(round.npc_btype),
                                        nullable(round.npc_type),
                                        nullable(round.level),
                                        nullable(report.result),
                                        nullable(report.report_time),
                                        file_mtime,
                                        imported_at,
                                        nullable(report.chain_start_time),
                                        nullable(report.chain_end_time),
                                        nullable(report.hero_id_1),
                                        nullable(report.hero_id_2),
                                        nullable(round.npc_ctid),
                                        nullable(round.disappear_tick),
                                        nullable(round.damage_taken),
                                        nullable(round.damage_dealt),
                                        nullable(round.ets),
                                        nullable(report.player_id),
                                        null_if_empty(report.player_name),
                                        null_if_empty(report.alliance_name),
                                        fort_round,
                                        free_ap})
                                 .lastInsertId();
        for (const LootEntry &item : round.loot)
            insert_loot.exec({file_name, round_no, nullable(item.item_type),
                              nullable(item.item_subtype), nullable(item.value)});
        slicer.add(
            {row.toLongLong(),
             {{round.npc_btype, fort_round, free_ap, report.chain_start_time, report.chain_end_time,
               file_mtime, report.hero_id_1, report.hero_id_2, report.player_id},
              report.player_name},
             round.level,
             round.npc_ctid,
             round.loot});
        ++round_no;
        loot_rows += static_cast<int>(round.loot.size());
    }
    store_slices(store, slicer, loot_rows);
    store.kept(QStringLiteral("DELETE FROM main.stale_chains WHERE file_name = ?"))
        .exec({file_name});
    transaction.commit(QStringLiteral("insert_report commit failed"));
}

void insert_field_report(const StoreConnection &store, const QString &file_name,
                         const FieldReport &attacks, double file_mtime, double imported_at)
{
    if (attacks.isEmpty())
        return;
    const QString &sql = field_insert();
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    store.kept(QStringLiteral("DELETE FROM field_reports WHERE file_name = ?")).exec({file_name});
    auto insert = store.kept(sql, QStringLiteral("prepare failed"),
                             QStringLiteral("insert_field_report exec failed"));
    for (const QVariant &attack : attacks) {
        QVariantMap values = attack.toMap();
        values.insert(QStringLiteral("file_name"), file_name);
        values.insert(QStringLiteral("file_mtime"), file_mtime);
        values.insert(QStringLiteral("imported_at"), imported_at);
        QVariantList row;
        row.reserve(field_column_names().size());
        for (const QString &column : field_column_names())
            row << values.value(column);
        insert.exec(row);
    }
    transaction.commit(QStringLiteral("insert_field_report commit failed"));
}

// A trial and a fort are stored whole or not at all, as chains and field fights are: were the
// program killed between the header and its children, the existence check would find the header at
// every later start and nobody would ever bring the rest.

void insert_trial_report(const StoreConnection &store, const QString &file_name,
                         const TrialReport &report, double file_mtime)
{
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    store.kept(QStringLiteral("DELETE FROM trial_reports WHERE file_name = ?")).exec({file_name});
    store
        .kept(QStringLiteral(R"sql(
        INSERT OR FAIL INTO trial_reports
          (file_name, mail_id, boss_name, npc_type, npc_level,
           tile_x, tile_y, event_time, file_mtime)
        VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?))sql"))
        .exec({file_name, not_null(report.mail_id), not_null(report.boss_name),
               nullable(report.npc_type), nullable(report.npc_level), nullable(report.tile_x),
               nullable(report.tile_y), report.event_time, file_mtime});
    auto insert_participant = store.kept(QStringLiteral(R"sql(
        INSERT OR FAIL INTO trial_participants
          (file_name, player_id, player_name, damage_rate, order_)
        VALUES (?, ?, ?, ?, ?))sql"));
    auto insert_loot = store.kept(QStringLiteral(R"sql(
        INSERT OR FAIL INTO trial_loot
          (participant_id, item_type, item_subtype, value)
        VALUES (?, ?, ?, ?))sql"));
    for (const TrialParticipant &participant : report.participants) {
        const qint64 id = insert_participant
                              .exec({file_name, nullable(participant.player_id),
                                     not_null(participant.player_name), participant.damage_rate,
                                     participant.order_})
                              .lastInsertId()
                              .toLongLong();
        for (const LootEntry &item : participant.loot)
            insert_loot.exec(loot_row(id, item));
    }
    transaction.commit(QStringLiteral("insert_trial_report commit failed"));
}

void insert_fort_report(const StoreConnection &store, const QString &file_name,
                        const FortReport &report, double file_mtime)
{
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    store.kept(QStringLiteral("DELETE FROM fort_reports WHERE file_name = ?")).exec({file_name});
    store
        .kept(QStringLiteral(R"sql(
        INSERT OR FAIL INTO fort_reports
          (file_name, mail_id, fort_level, tile_x, tile_y,
           damage_percent, event_time, file_mtime)
        VALUES (?, ?, ?, ?, ?, ?, ?, ?))sql"))
        .exec({file_name, not_null(report.mail_id), report.fort_level, nullable(report.tile_x),
               nullable(report.tile_y), report.damage_percent, report.event_time, file_mtime});
    auto insert_loot = store.kept(QStringLiteral(R"sql(
        INSERT OR FAIL INTO fort_loot
          (file_name, item_type, item_subtype, value)
        VALUES (?, ?, ?, ?))sql"));
    for (const LootEntry &item : report.loot)
        insert_loot.exec(loot_row(file_name, item));
    transaction.commit(QStringLiteral("insert_fort_report commit failed"));
}

} // namespace tally::data
