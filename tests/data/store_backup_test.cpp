#include "support/plain_connection.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"

#include <QDir>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

/// A store file of some earlier program.
class StoreBackup : public testing::Test {
protected:
    void make(const QStringList &statements) const
    {
        const PlainConnection old(path_);
        for (const QString &statement : statements)
            old.rows(statement);
    }

    void open_at(double now) const
    {
        data::TallyDb db(path_, [now] { return now; });
        db.init_schema();
    }

    QStringList backups() const
    {
        return QDir(folder_.path()).entryList({u"*backup*"_s}, QDir::Files, QDir::Name);
    }

    TempMails folder_;
    QString path_ = folder_.file(u"tally.db"_s);
};

constexpr double day = 86400.0;
const QString chains_without_rounds = u"CREATE TABLE reports (file_name TEXT PRIMARY KEY)"_s;

} // namespace

TEST_F(StoreBackup, DroppedRowsStandInACopyThatIsNamedByItsDate)
{
    make({chains_without_rounds, u"INSERT INTO reports VALUES ('gone')"_s,
          u"CREATE TABLE field_reports (file_name TEXT, attack_id REAL)"_s,
          u"INSERT INTO field_reports VALUES ('gone too', 1)"_s});
    open_at(1.7e9);
    ASSERT_EQ(backups(), QStringList{u"tally.backup-2023-11-14T22-13-20.db"_s});
    const PlainConnection copy(folder_.file(backups().constFirst()));
    EXPECT_EQ(copy.text(u"SELECT file_name FROM reports"_s), u"gone");
    EXPECT_EQ(copy.text(u"SELECT file_name FROM field_reports"_s), u"gone too");
    EXPECT_EQ(PlainConnection(path_).text(u"SELECT count(*) FROM reports"_s), u"0");
}

TEST_F(StoreBackup, AStoreThatKeepsItsTablesIsNotCopied)
{
    open_at(1.7e9);
    make({u"ALTER TABLE reports DROP COLUMN alliance_name"_s});
    open_at(1.7e9 + day);
    EXPECT_EQ(backups(), QStringList{});
}

TEST_F(StoreBackup, TheNewestTwoAreKeptAndNoOtherFileIsTouched)
{
    for (const QString &name :
         {u"tally.backup-2001-01-01T00-00-00.db"_s, u"tally.backup-2002-01-01T00-00-00.db"_s,
          u"other.backup-2000-01-01T00-00-00.db"_s})
        folder_.add(name, {});
    make({chains_without_rounds});
    open_at(1.7e9);
    EXPECT_EQ(backups(), (QStringList{u"other.backup-2000-01-01T00-00-00.db"_s,
                                      u"tally.backup-2002-01-01T00-00-00.db"_s,
                                      u"tally.backup-2023-11-14T22-13-20.db"_s}));
}

TEST_F(StoreBackup, WithoutACopyNothingIsDropped)
{
    make({chains_without_rounds, u"INSERT INTO reports VALUES ('stays')"_s});
    ASSERT_TRUE(QDir(folder_.path()).mkpath(u"tally.backup-2023-11-14T22-13-20.db.part/in"_s));
    EXPECT_THAT(failure_of([&] { open_at(1.7e9); }), HasSubstr("TallyDb fatal: "));
    EXPECT_EQ(PlainConnection(path_).text(u"SELECT file_name FROM reports"_s), u"stays");
}
