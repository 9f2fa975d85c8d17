#include "data/import/tally_watcher.h"

#include "data/import/import_pipeline.h"
#include "support/plain_connection.h"
#include "support/small_mails.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

/// A watcher and what it has told so far, which arrives on the thread of the test.
struct ToldWatcher {
    ToldWatcher(data::TallyDb *db, const QString &dir) : watcher(db, dir, {}, 1, nullptr)
    {
        using data::TallyWatcher;
        QObject::connect(&watcher, &TallyWatcher::newFilesImported, &here,
                         [this](int count) { counts.append(count); });
        QObject::connect(&watcher, &TallyWatcher::errorOccurred, &here,
                         [this](const QString &text) { errors.append(text); });
    }

    QList<int> counts;
    QStringList errors;
    QObject here; // takes what the watcher's thread says to that of the test
    data::TallyWatcher watcher;
};

template <typename Condition>
bool wait_until(Condition condition, int ms = 30'000)
{
    return QTest::qWaitFor(condition, ms);
}

/// A watcher that looks at its folder all the time.
class Watcher : public testing::Test {
protected:
    static QString mail(const QString &name) { return u"Persistent.Mail."_s + name; }
    void add(const QString &name, const QByteArray &content = fort_mail()) const
    {
        mails_.add(mail(name), content);
    }
    bool stored(const QString &name) const { return store_.db.fort_report_exists(mail(name)); }

    /// Starts the watcher and returns once it is past its first look.
    void start()
    {
        told_.watcher.start();
        for (int i = 0; told_.counts.isEmpty() && i < 1000; ++i) {
            add(u"probe-%1"_s.arg(i));
            wait_until([this] { return !told_.counts.isEmpty(); }, 50);
        }
        ASSERT_FALSE(told_.counts.isEmpty());
        settle();
    }

    /// Returns when all that lies in the folder now has been seen.
    void settle()
    {
        const auto marker = u"settled-%1"_s.arg(++settled_);
        add(marker);
        ASSERT_TRUE(wait_until([&] { return stored(marker); }));
    }

    TempMails mails_;
    TempStore store_;
    ToldWatcher told_{&store_.db, mails_.path()};
    int settled_ = 0;
};

} // namespace

TEST_F(Watcher, FilesOfEarlierDaysAreNotImported)
{
    add(u"old"_s);
    start();
    EXPECT_FALSE(stored(u"old"_s));
}

TEST_F(Watcher, ReportsOfOneLookAreToldTogether)
{
    start();
    ASSERT_TRUE(told_.watcher.stop_and_wait());
    const TempMails elsewhere;
    for (const QString &name : {u"a"_s, u"b"_s})
        elsewhere.add(mail(name), fort_mail());
    elsewhere.add(mail(u"c"_s), "of no interest");
    const QTemporaryDir root;
    const QString dir = root.filePath(u"mails"_s);
    ToldWatcher told(&store_.db, dir);
    const auto has_told = [&told] {
        return !told.counts.isEmpty();
    };
    told.watcher.start();
    // The folder itself appears, in one step, once the watcher has surely missed it.
    for (int i = 0; !has_told() && i < 1000; ++i) {
        wait_until(has_told, 20);
        ASSERT_TRUE(QDir().rename(elsewhere.path(), dir));
        if (!wait_until(has_told, 200) && !QDir().rename(dir, elsewhere.path()))
            FAIL() << "cannot take the folder away again";
    }
    EXPECT_EQ(told.counts, QList<int>{2});
}

TEST_F(Watcher, AHalfWrittenMailWaitsForTheNextFullImport)
{
    start();
    add(u"late"_s, fort_mail().chopped(3));
    settle();
    add(u"late"_s, fort_mail());
    settle();
    EXPECT_FALSE(stored(u"late"_s));
    EXPECT_TRUE(told_.errors.isEmpty());
    data::import_dir(mails_.path(), {}, store_.db, {}, nullptr);
    EXPECT_TRUE(stored(u"late"_s));
}

TEST_F(Watcher, AFileThatVanishedAndCameBackIsNew)
{
    start();
    add(u"back"_s, "half");
    settle();
    ASSERT_TRUE(QFile::remove(mails_.file(mail(u"back"_s))));
    settle();
    add(u"back"_s);
    settle();
    EXPECT_TRUE(stored(u"back"_s));
}

TEST_F(Watcher, AnErrorNamesItsFileAndTheWatcherGoesOn)
{
    start();
    PlainConnection(store_.path).rows(u"ALTER TABLE fort_reports RENAME TO aside"_s);
    add(u"bad"_s);
    ASSERT_TRUE(wait_until([this] { return !told_.errors.isEmpty(); }));
    EXPECT_THAT(told_.errors.first().toStdString(),
                testing::StartsWith("Persistent.Mail.bad: TallyDb fatal: "));
    PlainConnection(store_.path).rows(u"ALTER TABLE aside RENAME TO fort_reports"_s);
    settle();
    EXPECT_FALSE(stored(u"bad"_s));
}

TEST_F(Watcher, MailsThatCouldNotBeStoredAreToldWithWhatBringsThem)
{
    QStringList told;
    QObject::connect(&told_.watcher, &data::TallyWatcher::mailsNotStored, &told_.here,
                     [&told](const QString &text) { told << text; });
    start();
    const PlainConnection other(store_.path);
    other.rows(u"CREATE TRIGGER full BEFORE INSERT ON fort_loot WHEN NEW.file_name LIKE '%bad' "
               "BEGIN SELECT RAISE(ABORT, 'no room'); END"_s);
    add(u"bad"_s);
    ASSERT_TRUE(wait_until([&] { return !told.isEmpty(); }));
    EXPECT_THAT(told.first().toStdString(),
                testing::MatchesRegex("1 mail could not be stored \\(no room.*\\); \"Reimport "
                                      "mailcache...\" brings it\\."));
    EXPECT_TRUE(told_.errors.isEmpty());
}

TEST_F(Watcher, AStopDoesNotWaitForTheEndOfAPause)
{
    constexpr int pause = 600'000;
    data::TallyWatcher watcher(&store_.db, mails_.path(), {}, pause, nullptr);
    watcher.start();
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(watcher.stop_and_wait());
    EXPECT_LT(timer.elapsed(), pause / 10);
}
