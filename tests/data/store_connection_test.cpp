#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/store_dump.h"
#include "support/temp_store.h"

#include <QDir>
#include <QSqlDatabase>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::StartsWith;

namespace {

QString pragma(const data::TallyDb &db, const QString &name)
{
    return text_of(db.connection(), u"PRAGMA "_s + name);
}

} // namespace

TEST(StoreConnection, APragmaIsSetOnceForAThread)
{
    TempStore store;
    EXPECT_EQ(pragma(store.db, u"foreign_keys"_s), u"1");
    EXPECT_EQ(pragma(store.db, u"journal_mode"_s), u"wal");
    EXPECT_EQ(pragma(store.db, u"busy_timeout"_s), u"10000");
    EXPECT_EQ(pragma(store.db, u"synchronous"_s), u"1");
    pragma(store.db, u"busy_timeout = 7"_s);
    EXPECT_EQ(pragma(store.db, u"busy_timeout"_s), u"7");
    QString elsewhere;
    std::thread([&] { elsewhere = pragma(store.db, u"busy_timeout"_s); }).join();
    EXPECT_EQ(elsewhere, u"10000");
}

TEST(StoreConnection, EachThreadAndObjectHasItsOwnAndTheStoresEndTakesItAlong)
{
    QString mine;
    {
        TempStore store;
        const data::TallyDb other(store.path);
        mine = store.db.connection().connectionName();
        EXPECT_EQ(store.db.connection().connectionName(), mine);
        EXPECT_NE(other.connection().connectionName(), mine);
        // Threads that come and go may get the same id.
        for (int i = 0; i < 10; ++i)
            std::thread([&] {
                EXPECT_FALSE(store.db.report_exists(u"a"_s));
                EXPECT_NE(store.db.connection().connectionName(), mine);
            }).join();
        EXPECT_TRUE(QSqlDatabase::contains(mine));
    }
    EXPECT_FALSE(QSqlDatabase::contains(mine));
}

TEST(StoreConnection, AFileThatCannotBeOpenedIsNamedAndTriedAgain)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"later/tally.db"_s);
    data::TallyDb db(path);
    EXPECT_THAT(failure_of([&] { db.init_schema(); }),
                StartsWith(u"TallyDb fatal: open failed for %1: "_s.arg(path).toStdString()));
    QDir(folder.path()).mkdir(u"later"_s);
    EXPECT_FALSE(db.init_schema());
}

TEST(StoreConnection, ObjectsOnOneFileLoseNoRowsToEachOther)
{
    constexpr int writers = 4;
    constexpr int mails = 25;
    TempStore store;
    data::TallyDb second(store.path);
    const auto write = [](data::TallyDb &db, int writer) {
        for (int i = 0; i < mails; ++i) {
            const QString name = u"%1-%2"_s.arg(writer).arg(i);
            add_each_kind(db, name, 10000.0 * i, 2, 1);
            db.set_setting(u"shared"_s, name);
            db.link_fort_to_chains();
            EXPECT_TRUE(db.fort_report_exists(name));
        }
    };
    std::atomic<bool> done = false;
    std::thread reader([&] {
        int last = 0;
        while (!done) {
            const int now = second.chain_file_count();
            EXPECT_GE(now, last);
            last = now;
            second.setting_or(u"shared"_s, {});
        }
    });
    std::vector<std::thread> threads;
    for (int writer = 0; writer < writers; ++writer)
        threads.emplace_back([&, writer] {
            EXPECT_EQ(failure_of([&] { write(writer % 2 ? second : store.db, writer); }), "");
        });
    for (std::thread &thread : threads)
        thread.join();
    done = true;
    reader.join();

    QStringList counts;
    for (const auto *table :
         {u"reports", u"loot", u"field_reports", u"trial_reports", u"trial_participants",
          u"trial_loot", u"fort_loot", u"fort_reports WHERE battle_file_name <> ''"})
        counts << text_of(second.connection(),
                          u"SELECT count(*) FROM %1"_s.arg(QStringView(table)));
    EXPECT_EQ(counts.join(u' '), u"200 200 200 100 200 200 100 100");
    EXPECT_EQ(text_of(second.connection(), u"PRAGMA integrity_check"_s), u"ok");
}

// Names that are more than names where they stand in an address.
TEST(StoreConnection, EveryThreadOpensTheSameFileWhateverItsName)
{
    const QTemporaryDir folder;
#ifdef Q_OS_WIN
    const QString mark = u"%3F"_s; // no name may have a question mark
#else
    const QString mark = u"?"_s;
#endif
    for (const auto &name :
         {u"plain.db"_s, u"a b%20c%1d=e#f&.db"_s.replace(u"%1"_s, mark), u"Ärger ż😀.db"_s}) {
        data::TallyDb db(folder.filePath(name));
        db.init_schema();
        db.set_setting(u"theme"_s, name);
        QString elsewhere;
        std::thread([&] { elsewhere = db.setting_or(u"theme"_s, {}); }).join();
        EXPECT_EQ(elsewhere, name);
        EXPECT_EQ(db.all_settings(), (QMap<QString, QString>{{u"theme"_s, name}}));
    }
    EXPECT_EQ(QDir(folder.path()).entryList({u"*.db"_s}, QDir::Files).size(), 3);
}

TEST(StoreConnection, AFileThatTookTheStoresPlaceIsNotTakenForIt)
{
    TempStore store;
    TempStore other;
    EXPECT_TRUE(store.db.is_in_place());
    ASSERT_EQ(std::rename(qPrintable(other.path), qPrintable(store.path)), 0);
    EXPECT_FALSE(store.db.is_in_place());
    std::string failure;
    std::thread([&] { failure = failure_of([&] { store.db.get_setting(u"theme"_s); }); }).join();
    EXPECT_THAT(failure, testing::EndsWith("the file was replaced while the program ran"));
}
