#include "import/tally_watcher.h"

#include "import/import_pipeline.h"
#include "support/plain_connection.h"
#include "support/small_mails.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

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
        watcher_.start();
        for (int i = 0; spy_.isEmpty() && i < 1000; ++i) {
            add(u"probe-%1"_s.arg(i));
            spy_.wait(50);
        }
        ASSERT_FALSE(spy_.isEmpty());
        settle();
    }

    /// Returns when all that lies in the folder now has been seen.
    void settle()
    {
        const auto marker = u"settled-%1"_s.arg(++settled_);
        add(marker);
        ASSERT_TRUE(QTest::qWaitFor([&] { return stored(marker); }, 10'000));
        spy_.clear();
    }

    TempMails mails_;
    TempStore store_;
    data::TallyWatcher watcher_{&store_.db, mails_.path(), {}, 1, nullptr};
    QSignalSpy spy_{&watcher_, &data::TallyWatcher::newFilesImported};
    QSignalSpy errors_{&watcher_, &data::TallyWatcher::errorOccurred};
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
    ASSERT_TRUE(watcher_.stop_and_wait());
    const TempMails elsewhere;
    for (const QString &name : {u"a"_s, u"b"_s})
        elsewhere.add(mail(name), fort_mail());
    elsewhere.add(mail(u"c"_s), "of no interest");
    const QTemporaryDir root;
    const QString dir = root.filePath(u"mails"_s);
    data::TallyWatcher watcher(&store_.db, dir, {}, 1, nullptr);
    QSignalSpy spy(&watcher, &data::TallyWatcher::newFilesImported);
    watcher.start();
    // The folder itself appears, in one step, once the watcher has surely missed it.
    for (int i = 0; spy.isEmpty() && i < 1000; ++i) {
        QDir(dir).removeRecursively();
        spy.wait(20);
        ASSERT_TRUE(QDir().rename(elsewhere.path(), dir));
        if (!spy.wait(200) && !QDir().rename(dir, elsewhere.path()))
            FAIL() << "cannot take the folder away again";
    }
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy.first().first().toInt(), 2);
}

TEST_F(Watcher, AHalfWrittenMailWaitsForTheNextFullImport)
{
    start();
    add(u"late"_s, fort_mail().chopped(3));
    settle();
    add(u"late"_s, fort_mail());
    settle();
    EXPECT_FALSE(stored(u"late"_s));
    EXPECT_TRUE(errors_.isEmpty());
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
    ASSERT_TRUE(errors_.wait(10'000));
    EXPECT_THAT(errors_.first().first().toString().toStdString(),
                testing::StartsWith("Persistent.Mail.bad: TallyDb fatal: "));
    PlainConnection(store_.path).rows(u"ALTER TABLE aside RENAME TO fort_reports"_s);
    settle();
    EXPECT_FALSE(stored(u"bad"_s));
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
