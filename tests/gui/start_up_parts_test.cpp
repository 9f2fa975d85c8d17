#include "app/gui/folder_trouble.h"
#include "app/gui/image_formats.h"
#include "app/gui/instance_knock.h"
#include "app/gui/interrupt_watch.h"
#include "app/gui/new_store.h"
#include "app/gui/rollback_marker.h"
#include "platform/log/process_log.h"
#include "platform/updater/backups.h"
#include "platform/updater/rollback_notes.h"
#include "support/temp_store.h"
#include "support/unprivileged.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

using namespace tally;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

void make_file(const QString &path)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
}

} // namespace

class InterruptWatch : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(, InterruptWatch, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_P(InterruptWatch, ASignalIsToldOnceByTheEventLoop)
{
    const app::InterruptWatch watch(nullptr, 1ms);
    QSignalSpy interrupted(&watch, &app::InterruptWatch::interrupted);
    EXPECT_FALSE(interrupted.wait(20));
    std::raise(GetParam());
    EXPECT_TRUE(interrupted.isEmpty());
    EXPECT_TRUE(interrupted.wait(30'000));
    EXPECT_FALSE(interrupted.wait(20));
}

TEST(FolderTrouble, IsToldOnlyWhereNoFileCanBeMade)
{
    const QTemporaryDir folder;
    EXPECT_EQ(app::folder_trouble(folder.path()), std::nullopt);
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    make_file(folder.filePath(u"file"_s));
    const QString data = folder.filePath(u"file/data"_s);
    EXPECT_TRUE(app::folder_trouble(data).value_or(QString()).contains(data));
}

TEST(NewStore, KeepsTheSettingsOfTheLostOne)
{
    test::TempStore lost;
    lost.db.set_setting(u"mailcache_dir"_s, u"/mails"_s);
    EXPECT_EQ(app::settings_of_lost_store(lost.db), std::nullopt);
    ASSERT_TRUE(QFile::remove(lost.path));
    const auto settings = app::settings_of_lost_store(lost.db);
    ASSERT_TRUE(settings);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"tally.db"_s);
    make_file(path + u"-wal"_s);
    app::make_new_store(path, *settings);
    EXPECT_EQ(data::TallyDb(path).all_settings(), *settings);
    app::make_new_store(path, {});
    EXPECT_EQ(data::TallyDb(path).all_settings(), *settings) << "one that is there stays";
}

TEST(RollbackMarker, OnlyAStartThatComesAfterAnotherOfTheSameUpdateTells)
{
    const QTemporaryDir dir;
    const QString marker = dir.filePath(u"rollback-pending.txt"_s);
    const auto tells = [&](const char *update) {
        if (QFile file(marker); *update != 0 && file.open(QIODevice::WriteOnly))
            file.write(update);
        return platform::Updater::note_start(marker);
    };
    EXPECT_FALSE(tells(""));
    EXPECT_FALSE(tells("v3\r\n")) << "the first start";
    EXPECT_TRUE(tells("")) << "an earlier one did not last";
    EXPECT_FALSE(tells("v4\r\n")) << "what was noted was of another update";
    QObject context;
    app::clear_rollback_marker_when_healthy(marker, &context, 1ms, dir.path());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !QFile::exists(marker); }, 30'000));
    EXPECT_FALSE(tells("v4\r\n")) << "it was installed once more";
}

TEST(RollbackMarker, AHealthyTimeRemovesAllBackupsButTheNewestTwo)
{
    const QTemporaryDir dir;
    const QDir folder(dir.path());
    const QString marker = folder.filePath(u"rollback-pending.txt"_s);
    make_file(marker);
    ASSERT_TRUE(folder.mkpath(u"another/plugins"_s));
    std::filesystem::permissions(dir.path().toStdString(), std::filesystem::perms::all);
    for (const int age : {0, 2, 1, 3}) {
        const QString backup = folder.filePath(u"tallyhand-backup-v%1"_s.arg(age));
        ASSERT_TRUE(folder.mkpath(backup + u"/plugins"_s));
        std::filesystem::permissions(backup.toStdString(), std::filesystem::perms::all);
        std::filesystem::last_write_time(backup.toStdString(),
                                         std::filesystem::file_time_type::clock::now() - age * 1h);
    }
    ASSERT_TRUE(
        QFile::link(folder.filePath(u"another"_s), folder.filePath(u"tallyhand-backup-x"_s)));
    EXPECT_EQ(platform::Updater::newest_backup(dir.path()),
              folder.filePath(u"tallyhand-backup-v0"_s));
    {
        const test::Unprivileged other;
        EXPECT_EQ(platform::Updater::newest_backup(dir.path()).isEmpty(), geteuid() == 65534)
            << "another's is not this user's, whatever he may do with it";
    }
    QObject context;
    app::clear_rollback_marker_when_healthy(marker, &context, 1ms, dir.path());
    EXPECT_TRUE(QFile::exists(marker));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !QFile::exists(marker); }, 30'000));
    EXPECT_TRUE(QThreadPool::globalInstance()->waitForDone(30'000));
    EXPECT_EQ(folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot),
              QStringList({u"another"_s, u"tallyhand-backup-v0"_s, u"tallyhand-backup-v1"_s,
                           u"tallyhand-backup-x"_s}));
    EXPECT_TRUE(folder.exists(u"another/plugins"_s));
}

TEST(RollbackMarker, OneThatComesLaterOrOfAShortRunStays)
{
    const QTemporaryDir dir;
    const QString late = dir.filePath(u"late"_s);
    const QString ended = dir.filePath(u"ended"_s);
    QObject context;
    app::clear_rollback_marker_when_healthy(late, &context, 1ms, dir.path());
    make_file(late);
    make_file(ended);
    {
        QObject run;
        app::clear_rollback_marker_when_healthy(ended, &run, 1ms, dir.path());
    }
    QTest::qWait(50);
    EXPECT_TRUE(QFile::exists(late));
    EXPECT_TRUE(QFile::exists(ended));
}

TEST(Knock, TheListenerHearsEachAndSurvivesWhatIsNoKnock)
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(u"knock"_s);
    app::knock(name); // nobody is there
    make_file(name);  // left by an instance that died
    const app::KnockListener listener(name, nullptr);
    QSignalSpy knocked(&listener, &app::KnockListener::knocked);
    for (int i = 1; i <= 3; ++i) {
        app::knock(name);
        EXPECT_TRUE(QTest::qWaitFor([&] { return knocked.size() == i; }, 30'000));
    }
}

TEST(ImageFormats, AMissingWebpPluginIsSaidOnce)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(u"log"_s);
    {
        const platform::ProcessLog log({.path = path, .run_line = u"start"_s});
        app::warn_without_webp({"png", "jpeg"});
        app::warn_without_webp({"png", "webp"});
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_THAT(file.readAll().toStdString(),
                testing::ContainsRegex("^[^\n]* info process: start\n"
                                       "[^\n]* warning tally.ui: Qt lacks its WebP plugin: items "
                                       "and heroes show without icons\n$"));
}
