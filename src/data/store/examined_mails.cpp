#include "data/store/tally_db.h"

#include "platform/identity.h"

#include <QMutexLocker>

namespace tally::data {
namespace {

struct KindBit {
    bool StoredKinds::*kind;
    int bit;
};

constexpr KindBit kind_bits[] = {
    {&StoredKinds::battle, 1},
    {&StoredKinds::field, 2},
    {&StoredKinds::trial, 4},
    {&StoredKinds::fort, 8},
};

int bits_of(const StoredKinds &kinds)
{
    int bits = 0;
    for (const auto &[kind, bit] : kind_bits)
        bits |= kinds.*kind ? bit : 0;
    return bits;
}

StoredKinds kinds_of(int bits)
{
    StoredKinds kinds;
    for (const auto &[kind, bit] : kind_bits)
        kinds.*kind = (bits & bit) != 0;
    return kinds;
}

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

} // namespace

// The table only saves work, so one of another shape gives way.
void TallyDb::ensure_examined_mails(const QSqlDatabase &db)
{
    auto known =
        exec_prepared(db, QStringLiteral("SELECT type, sql FROM sqlite_master WHERE name = "
                                         "'examined_mails' COLLATE NOCASE"));
    const bool is_there = known.next();
    if (is_there && known.value(1).toString() == table_sql)
        return;
    const QString type = is_there ? known.value(0).toString() : QString();
    known.finish();
    if (is_there)
        exec_prepared(db, QStringLiteral("DROP %1 examined_mails").arg(type));
    exec_prepared(db, table_sql);
}

StoredKinds TallyDb::stored_kinds(const QString &file_name) const
{
    return known_mail(file_name, {}).stored;
}

// One statement, for each takes and gives back the lock of the file, which costs more than all the
// rest of an import of mails that are stored.
KnownMail TallyDb::known_mail(const QString &file_name, const platform::FileStamp &stamp) const
{
    auto statement = kept(QStringLiteral(R"sql(
        SELECT EXISTS(SELECT 1 FROM reports WHERE file_name = ?),
               EXISTS(SELECT 1 FROM field_reports WHERE file_name = ?),
               EXISTS(SELECT 1 FROM trial_reports WHERE file_name = ?),
               EXISTS(SELECT 1 FROM fort_reports WHERE file_name = ?),
               (SELECT kinds FROM examined_mails
                WHERE file_name = ? AND modified_nanos = ? AND size = ? AND version = ?))sql"));
    QSqlQuery &row = statement.exec({file_name, file_name, file_name, file_name, file_name,
                                     stamp.modified_nanos, stamp.size, version});
    row.next();
    KnownMail known{.stored = {.battle = row.value(0).toBool(),
                               .field = row.value(1).toBool(),
                               .trial = row.value(2).toBool(),
                               .fort = row.value(3).toBool()},
                    .examined = {}};
    if (!row.isNull(4))
        known.examined = kinds_of(row.value(4).toInt());
    return known;
}

void TallyDb::note_examined(const std::vector<ExaminedMail> &mails)
{
    const QMutexLocker lock(&write_mutex_);
    Transaction transaction(connection());
    auto insert = kept(QStringLiteral("INSERT OR REPLACE INTO examined_mails VALUES (?,?,?,?,?)"));
    for (const ExaminedMail &mail : mails)
        insert.exec({mail.file_name, mail.stamp.modified_nanos, mail.stamp.size,
                     bits_of(mail.kinds), version});
    transaction.commit(QStringLiteral("note_examined commit failed"));
}

} // namespace tally::data
