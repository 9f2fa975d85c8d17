#include "data/store/tally_db.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

namespace tally::data {

namespace {

Q_LOGGING_CATEGORY(store_log, "tally.store")

constexpr qsizetype kept_backups = 2;

/// "tally.backup-2026-01-31T18-05-09.db" beside "tally.db": names in the order of their times.
QString backup_path(const QFileInfo &store, double now)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(now * 1000), Qt::UTC);
    return store.dir().filePath(
        QStringLiteral("%1.backup-%2.db")
            .arg(store.completeBaseName(), time.toString(QStringLiteral("yyyy-MM-ddTHH-mm-ss"))));
}

void remove_old_backups(const QFileInfo &store)
{
    QDir folder = store.dir();
    const QString pattern = QStringLiteral("%1.backup-*.db").arg(store.completeBaseName());
    const QStringList oldest_first = folder.entryList({pattern}, QDir::Files, QDir::Name);
    for (qsizetype i = 0; i < oldest_first.size() - kept_backups; ++i)
        folder.remove(oldest_first.at(i));
}

} // namespace

void TallyDb::back_up(const QSqlDatabase &db, double now)
{
    auto file = exec_prepared(
        db, QStringLiteral("SELECT file FROM pragma_database_list WHERE name = 'main'"));
    file.next();
    const QFileInfo store(file.value(0).toString());
    file.finish();
    const QString path = backup_path(store, now);
    const QString partial = path + QStringLiteral(".part");
    QFile::remove(partial);
    exec_prepared(db, QStringLiteral("VACUUM INTO ?"), {partial});
    QFile::remove(path);
    if (!QFile::rename(partial, path))
        fatal(QStringLiteral("backup failed for %1").arg(path), {});
    qCInfo(store_log).noquote() << "kept a copy of the store before an update:" << path;
    remove_old_backups(store);
}

} // namespace tally::data
