#include "data/store/mail_memory.h"

#include "data/store/store_connection.h"

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

} // namespace

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

StoredKinds stored_kinds(const StoreConnection &store, const QString &file_name)
{
    return known_mail(store, file_name, {}).stored;
}

// One statement, for each takes and gives back the lock of the file, which costs more than all the
// rest of an import of mails that are stored.
KnownMail known_mail(const StoreConnection &store, const QString &file_name,
                     const platform::FileStamp &stamp)
{
    auto statement = store.kept(QStringLiteral(R"sql(
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

void note_examined(const StoreConnection &store, const std::vector<ExaminedMail> &mails)
{
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    auto insert =
        store.kept(QStringLiteral("INSERT OR REPLACE INTO examined_mails VALUES (?,?,?,?,?)"));
    for (const ExaminedMail &mail : mails)
        insert.exec({mail.file_name, mail.stamp.modified_nanos, mail.stamp.size,
                     bits_of(mail.kinds), version});
    transaction.commit(QStringLiteral("note_examined commit failed"));
}

} // namespace tally::data
