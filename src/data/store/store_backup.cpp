#include "data/store/store_backup.h"

#include "data/store/store_connection.h"

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

void back_up(const StoreConnection &store, double now)
{
    const QFileInfo file(store.file().path());
    const QString path = backup_path(file, now);
    const QString partial = path + QStringLiteral(".part");
    QFile::remove(partial);
    store.exec(QStringLiteral("VACUUM INTO ?"), {partial});
    QFile::remove(path);
    if (!QFile::rename(partial, path))
        StoreConnection::fatal(QStringLiteral("backup failed for %1").arg(path), {});
    qCInfo(store_log).noquote() << "kept a copy of the store before an update:" << path;
    remove_old_backups(file);
}

} // namespace tally::data
