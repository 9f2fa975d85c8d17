#include "data/store/tally_db.h"

#include <QMutexLocker>

namespace tally::data {

namespace {

constexpr double link_window_seconds = 300.0;

} // namespace

int TallyDb::link_fort_to_chains()
{
    const QMutexLocker lock(&write_mutex_);
    const QSqlDatabase db = connection();
    int linked = 0;
    look_after_slices(db);
    if (!unlinked_forts(db).empty() || !slices_complete())
        linked = link_forts_and_slice(db);
    refresh_statistics(db);
    return linked;
}

int TallyDb::link_forts_and_slice(const QSqlDatabase &db) const
{
    Transaction transaction(db);
    int linked = 0;
    for (const auto &[fort, event_time] : unlinked_forts(db)) {
        const auto chain = chain_for_fort(db, event_time);
        if (!chain)
            continue;
        exec_prepared(
            db, QStringLiteral("UPDATE fort_reports SET battle_file_name = ? WHERE file_name = ?"),
            {*chain, fort});
        ++linked;
    }
    slice_stale_chains();
    transaction.commit(QStringLiteral("link_fort_to_chains commit failed"));
    return linked;
}

std::vector<TallyDb::UnlinkedFort> TallyDb::unlinked_forts(const QSqlDatabase &db)
{
    std::vector<UnlinkedFort> forts;
    auto rows = exec_prepared(db, QStringLiteral(R"sql(
        SELECT file_name, event_time FROM fort_reports
        WHERE battle_file_name IS NULL OR battle_file_name = '')sql"));
    while (rows.next()) {
        if (!rows.isNull(1))
            forts.push_back({rows.value(0).toString(), rows.value(1).toDouble()});
    }
    return forts;
}

/// The chain that earned the fort, its rounds marked if none of them was known as the fort's.
std::optional<QString> TallyDb::chain_for_fort(const QSqlDatabase &db, double event_time)
{
    const QVariantList window = {event_time - link_window_seconds, event_time + link_window_seconds,
                                 event_time};
    auto marked = exec_prepared(db, QStringLiteral(R"sql(
        SELECT DISTINCT r.file_name FROM reports r
        WHERE COALESCE(r.chain_start_time, r.file_mtime) BETWEEN ? AND ?
          AND COALESCE(r.is_fort_round, 0) = 1
        ORDER BY ABS(COALESCE(r.chain_start_time, r.file_mtime) - ?) ASC
        LIMIT 1)sql"),
                                window);
    if (marked.next())
        return marked.value(0).toString();
    auto any = exec_prepared(db, QStringLiteral(R"sql(
        SELECT DISTINCT r.file_name FROM reports r
        WHERE COALESCE(r.chain_start_time, r.file_mtime) BETWEEN ? AND ?
        ORDER BY ABS(COALESCE(r.chain_start_time, r.file_mtime) - ?) ASC
        LIMIT 1)sql"),
                             window);
    if (!any.next())
        return std::nullopt;
    const QString chain = any.value(0).toString();
    any.finish();
    exec_prepared(db, QStringLiteral(R"sql(
        UPDATE reports SET is_fort_round = 1
        WHERE file_name = ? AND round_no = (
          SELECT round_no FROM reports WHERE file_name = ?
          ORDER BY COALESCE(damage_dealt, 0) DESC LIMIT 1))sql"),
                  {chain, chain});
    exec_prepared(db, QStringLiteral(R"sql(
        UPDATE reports SET is_free_ap = 1
        WHERE file_name = ? AND COALESCE(is_fort_round, 0) = 0)sql"),
                  {chain});
    return chain;
}

} // namespace tally::data
