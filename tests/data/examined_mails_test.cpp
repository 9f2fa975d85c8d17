#include "data/import/import_pipeline.h"
#include "support/small_mails.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"

#include <QDateTime>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include <functional>

namespace tally::data {
namespace {

using namespace Qt::StringLiterals;
using test::TempMails;
using test::TempStore;

const QString name = u"Persistent.Mail.1"_s;
const QByteArray report = test::fort_mail();
const QByteArray no_report(report.size(), 'x');
constexpr double written = 1.7e9;

/// A folder with one mail that was imported once.
struct ImportedFolder {
    TempMails mails;
    TempStore store;

    explicit ImportedFolder(const QByteArray &content, double modified = written)
    {
        mails.add(name, content, modified);
        import();
    }

    int import() { return import_dir(mails.path(), {}, store.db, {}, nullptr).imported; }

    void run(const char *sql)
    {
        QSqlQuery query(store.db.connection());
        ASSERT_TRUE(query.exec(QString::fromLatin1(sql))) << sql;
    }
};

// The content behind an unchanged stamp tells whether a file was read again.
TEST(ExaminedMails, AreNotReadAgain)
{
    ImportedFolder folder(no_report);
    folder.mails.add(name, report, written);
    EXPECT_EQ(folder.import(), 0);
}

TEST(ExaminedMails, AreReadAgainWhenTheFileOrTheProgramIsAnotherOrTheMemoryIsLost)
{
    const std::function<void(ImportedFolder &)> changes[] = {
        [](ImportedFolder &folder) { folder.mails.add(name, report, written + 0.001); },
        [](ImportedFolder &folder) { folder.mails.add(name, report + "x", written); },
        [](ImportedFolder &folder) { folder.run("UPDATE examined_mails SET version = 'v1'"); },
        [](ImportedFolder &folder) {
            folder.run("DELETE FROM examined_mails");
        }};
    for (const auto &change : changes) {
        ImportedFolder folder(no_report);
        folder.mails.add(name, report, written);
        change(folder);
        EXPECT_EQ(folder.import(), 1) << "change " << &change - changes;
    }
}

TEST(ExaminedMails, GiveTheirRowsAgainWhenThoseAreGone)
{
    ImportedFolder folder(report);
    EXPECT_EQ(folder.import(), 0);
    folder.run("DELETE FROM fort_reports");
    EXPECT_EQ(folder.import(), 1);
}

TEST(ExaminedMails, DoNotCountWhileTheirFileMayStillBeWritten)
{
    const double now = static_cast<double>(QDateTime::currentSecsSinceEpoch());
    ImportedFolder folder(no_report, now);
    folder.mails.add(name, report, now);
    EXPECT_EQ(folder.import(), 1);
}

TEST(ExaminedMails, DoNotCountWhenTheirReportCouldNotBeStored)
{
    ImportedFolder folder({});
    folder.run("CREATE TRIGGER full BEFORE INSERT ON fort_loot "
               "BEGIN SELECT RAISE(ABORT, 'disk full'); END");
    folder.mails.add(name, report);
    EXPECT_EQ(folder.import(), 0);
    folder.run("DROP TRIGGER full");
    EXPECT_EQ(folder.import(), 1);
}

TEST(ExaminedMails, ATableOfAnotherShapeIsMadeAnew)
{
    for (const char *other : {"CREATE TABLE examined_mails (file_name TEXT, kinds INTEGER)",
                              "CREATE VIEW examined_mails AS SELECT 1 AS kinds"}) {
        ImportedFolder folder(no_report);
        folder.run("DROP TABLE examined_mails");
        folder.run(other);
        folder.store.db.init_schema();
        folder.mails.add(name, report, written + 1.0);
        EXPECT_EQ(folder.import(), 1) << other;
        folder.mails.add(name, no_report, written + 1.0);
        EXPECT_EQ(folder.import(), 0) << other;
    }
}

} // namespace
} // namespace tally::data
