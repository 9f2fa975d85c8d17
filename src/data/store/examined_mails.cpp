#include "data/store/tally_db.h"

#include "platform/identity.h"

#include <QMutexLocker>
#include <QStringList>

namespace tally::data {
namespace {

// Another version may see more in a mail.
const QString version = platform::application_version;

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

ReportKinds TallyDb::stored_kinds(const QString &file_name) const
{
    return known_mail(file_name, {}).stored;
}

KnownMail TallyDb::known_mail(const QString &file_name, const platform::FileStamp &stamp) const
{
    static const QString sql = known_mail_sql();
    QVariantList params(report_kinds.size(), file_name);
    params << file_name << stamp.modified_nanos << stamp.size << version;
    auto statement = kept(sql);
    QSqlQuery &row = statement.exec(params);
    row.next();
    KnownMail known{.stored = ReportKinds(row.value(0).toInt()), .examined = {}};
    if (const QVariant examined = row.value(1); !examined.isNull())
        known.examined = ReportKinds(examined.toInt());
    return known;
}

void TallyDb::note_examined(const std::vector<ExaminedMail> &mails)
{
    const QMutexLocker lock(&write_mutex_);
    Transaction transaction(connection());
    auto insert = kept(QStringLiteral("INSERT OR REPLACE INTO examined_mails VALUES (?,?,?,?,?)"));
    for (const ExaminedMail &mail : mails)
        insert.exec({mail.file_name, mail.stamp.modified_nanos, mail.stamp.size, mail.kinds.sum(),
                     version});
    transaction.commit(QStringLiteral("note_examined commit failed"));
}

} // namespace tally::data
