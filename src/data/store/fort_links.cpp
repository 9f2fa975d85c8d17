#include "data/store/fort_links.h"

#include "data/store/migrations.h"
#include "data/store/slice_upkeep.h"
#include "data/store/store_connection.h"

#include <QMutexLocker>

#include <optional>
#include <stdexcept>
#include <vector>

namespace tally::data {

namespace {

constexpr double link_window_seconds = 300.0;

struct UnlinkedFort {
    QString file_name;
    double event_time;
};

std::vector<UnlinkedFort> unlinked_forts(const StoreConnection &store)
{
    std::vector<UnlinkedFort> forts;
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT file_name, event_time FROM fort_reports
        WHERE battle_file_name IS NULL OR battle_file_name = '')sql"));
    while (rows.next()) {
        if (!rows.isNull(1))
            forts.push_back({rows.value(0).toString(), rows.value(1).toDouble()});
    }
    return forts;
}

/// The chain that earned the fort, its rounds marked if none of them was known as the fort's.
std::optional<QString> chain_for_fort(const StoreConnection &store, double event_time)
{
    const QVariantList window = {event_time - link_window_seconds, event_time + link_window_seconds,
                                 event_time};
    auto marked = store.exec(QStringLiteral(R"sql(
        SELECT DISTINCT r.file_name FROM reports r
        WHERE COALESCE(r.chain_start_time, r.file_mtime) BETWEEN ? AND ?
          AND COALESCE(r.is_fort_round, 0) = 1
        ORDER BY ABS(COALESCE(r.chain_start_time, r.file_mtime) - ?) ASC
        LIMIT 1)sql"),
                             window);
    if (marked.next())
        return marked.value(0).toString();
    auto any = store.exec(QStringLiteral(R"sql(
        SELECT DISTINCT r.file_name FROM reports r
        WHERE COALESCE(r.chain_start_time, r.file_mtime) BETWEEN ? AND ?
        ORDER BY ABS(COALESCE(r.chain_start_time, r.file_mtime) - ?) ASC
        LIMIT 1)sql"),
                          window);
    if (!any.next())
        return std::nullopt;
    const QString chain = any.value(0).toString();
    any.finish();
    store.exec(QStringLiteral(R"sql(
        UPDATE reports SET is_fort_round = 1
        WHERE file_name = ? AND round_no = (
          SELECT round_no FROM reports WHERE file_name = ?
          ORDER BY COALESCE(damage_dealt, 0) DESC LIMIT 1))sql"),
               {chain, chain});
    store.exec(QStringLiteral(R"sql(
        UPDATE reports SET is_free_ap = 1
        WHERE file_name = ? AND COALESCE(is_fort_round, 0) = 0)sql"),
               {chain});
    return chain;
}

int link_forts_and_slice(const StoreConnection &store)
{
    constexpr int chains_at_once = 200; // few enough not to keep other writers waiting
    int linked = 0;
    {
        const QMutexLocker lock(&store.write_mutex());
        Transaction transaction(store.connection());
        for (const auto &[fort, event_time] : unlinked_forts(store)) {
            const auto chain = chain_for_fort(store, event_time);
            if (!chain)
                continue;
            store.exec(QStringLiteral("UPDATE fort_reports SET battle_file_name = ? "
                                      "WHERE file_name = ?"),
                       {*chain, fort});
            ++linked;
        }
        transaction.commit(QStringLiteral("link_fort_to_chains commit failed"));
    }
    try {
        complete_chain_slices(store, chains_at_once);
    } catch (const std::runtime_error &) {
        // Logged; whoever reads them completes them.
    }
    return linked;
}

} // namespace

int link_fort_to_chains(const StoreConnection &store)
{
    look_after_derived_schema(store);
    int linked = 0;
    if (!unlinked_forts(store).empty() || !slices_complete(store))
        linked = link_forts_and_slice(store);
    const QMutexLocker lock(&store.write_mutex());
    refresh_statistics(store);
    return linked;
}

} // namespace tally::data
