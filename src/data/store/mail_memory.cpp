#include "data/store/mail_memory.h"

#include "data/store/store_connection.h"

#include "platform/identity.h"

#include <QMutexLocker>
#include <QStringList>

namespace tally::data {
namespace {

// Another version may see more in a mail.
const QString version = platform::application_version;

// As the database keeps it.
const QString table_sql = QStringLiteral(R"sql(CREATE TABLE examined_mails (
  file_name TEXT PRIMARY KEY NOT NULL,
  modified_nanos INTEGER NOT NULL,
  size INTEGER NOT NULL,
  kinds INTEGER NOT NULL,
  version TEXT NOT NULL
) WITHOUT ROWID)sql");

/// The sum of the kinds that are stored, then that of the kinds that were found. One statement, for
/// each takes and gives back the lock of the file, which costs more than all the rest of an import
/// of mails that are stored.
QString known_mail_sql()
{
    QStringList stored;
    for (const auto &[kind, table] : report_kinds)
        stored << QStringLiteral("%1 * EXISTS(SELECT 1 FROM %2 WHERE file_name = ?)")
                      .arg(static_cast<int>(kind))
                      .arg(QLatin1StringView(table));
    return QStringLiteral(R"sql(
        SELECT %1,
               (SELECT kinds FROM examined_mails
                WHERE file_name = ? AND modified_nanos = ? AND size = ? AND version = ?))sql")
        .arg(stored.join(u" + "));
}

} // namespace

void ensure_mail_memory(const StoreConnection &store)
{
    auto known = store.exec(QStringLiteral("SELECT type, sql FROM sqlite_master WHERE name = "
                                           "'examined_mails' COLLATE NOCASE"));
    const bool is_there = known.next();
    if (is_there && known.value(1).toString() == table_sql)
        return;
    const QString type = is_there ? known.value(0).toString() : QString();
    known.finish();
    if (is_there)
        store.exec(QStringLiteral("DROP %1 examined_mails").arg(type));
    store.exec(table_sql);
}

bool report_exists(const StoreConnection &store, const QString &file_name)
{
    return store.any_row(QStringLiteral("SELECT 1 FROM reports WHERE file_name = ? LIMIT 1"),
                         {file_name});
}

bool field_report_exists(const StoreConnection &store, const QString &file_name)
{
    return store.any_row(QStringLiteral("SELECT 1 FROM field_reports WHERE file_name = ? LIMIT 1"),
                         {file_name});
}

bool trial_report_exists(const StoreConnection &store, const QString &file_name)
{
    return store.any_row(QStringLiteral("SELECT 1 FROM trial_reports WHERE file_name = ? LIMIT 1"),
                         {file_name});
}

bool fort_report_exists(const StoreConnection &store, const QString &file_name)
{
    return store.any_row(QStringLiteral("SELECT 1 FROM fort_reports WHERE file_name = ? LIMIT 1"),
                         {file_name});
}

ReportKinds stored_kinds(const StoreConnection &store, const QString &file_name)
{
    return known_mail(store, file_name, {}).stored;
}

KnownMail known_mail(const StoreConnection &store, const QString &file_name,
                     const platform::FileStamp &stamp)
{
    static const QString sql = known_mail_sql();
    QVariantList params(report_kinds.size(), file_name);
    params << file_name << stamp.modified_nanos << stamp.size << version;
    auto statement = store.kept(sql);
    QSqlQuery &row = statement.exec(params);
    row.next();
    KnownMail known{.stored = ReportKinds(row.value(0).toInt()), .examined = {}};
    if (const QVariant examined = row.value(1); !examined.isNull())
        known.examined = ReportKinds(examined.toInt());
    return known;
}

void note_examined(const StoreConnection &store, const std::vector<ExaminedMail> &mails)
{
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    auto insert =
        store.kept(QStringLiteral("INSERT OR REPLACE INTO examined_mails VALUES (?,?,?,?,?)"));
    for (const ExaminedMail &mail : mails)
        insert.exec({mail.file_name, mail.stamp.modified_nanos, mail.stamp.size, mail.kinds.sum(),
                     version});
    transaction.commit(QStringLiteral("note_examined commit failed"));
}

} // namespace tally::data
