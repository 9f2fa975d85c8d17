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

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gmock/gmock.h>

#include <csignal>
#include <cstring>
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

TEST(RollbackMarker, OneThatIsThereAtTheStartGoesAfterAHealthyTime)
{
    const QTemporaryDir dir;
    const QString marker = dir.filePath(u"rollback-pending.txt"_s);
    make_file(marker);
    QObject context;
    app::clear_rollback_marker_when_healthy(marker, &context, 1ms, dir.path());
    EXPECT_TRUE(QFile::exists(marker));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !QFile::exists(marker); }, 30'000));
}

TEST(RollbackMarker, OnlyAStartThatComesAfterAnotherOfTheSameUpdateTells)
{
    using platform::Updater::note_start;
    const QTemporaryDir dir;
    const QString marker = dir.filePath(u"rollback-pending.txt"_s);
    const QString seen = dir.filePath(u"rollback-seen.txt"_s);
    const auto update_to = [&](const char *version) {
        QFile file(marker);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(version);
    };
    EXPECT_FALSE(note_start(marker));
    EXPECT_FALSE(QFile::exists(seen)) << "there was no update";
    update_to("v3\r\n");
    EXPECT_FALSE(note_start(marker)) << "the first start";
    EXPECT_TRUE(note_start(marker)) << "an earlier one did not last";
    EXPECT_TRUE(note_start(marker));
    update_to("v4\n");
    EXPECT_FALSE(note_start(marker)) << "what was noted was of another update";
    QObject context;
    app::clear_rollback_marker_when_healthy(marker, &context, 1ms, dir.path());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !QFile::exists(marker); }, 30'000));
    EXPECT_FALSE(QFile::exists(seen));
    update_to("v4\n");
    EXPECT_FALSE(note_start(marker)) << "the version was installed once more";
}

TEST(RollbackMarker, AHealthyTimeRemovesAllBackupsButTheNewestTwo)
{
    const QTemporaryDir dir;
    const QString marker = dir.filePath(u"rollback-pending.txt"_s);
    make_file(marker);
    EXPECT_EQ(platform::Updater::newest_backup(dir.path()), QString());
    QDir folder(dir.path());
    for (const char *name : {"tallyhand-backup-v3", "tallyhand-backup-v1", "tallyhand-backup-v2",
                             "tallyhand-backup-v0", "another"}) {
        ASSERT_TRUE(folder.mkpath(QLatin1StringView(name) + u"/plugins"_s));
        make_file(folder.filePath(QLatin1StringView(name) + u"/plugins/a"_s));
        const auto time = std::filesystem::file_time_type::clock::now();
        std::filesystem::last_write_time(folder.filePath(QLatin1StringView(name)).toStdString(),
                                         time + 1h * (name[std::strlen(name) - 1] - 'z'));
    }
    ASSERT_TRUE(
        QFile::link(folder.filePath(u"another"_s), folder.filePath(u"tallyhand-backup-v9"_s)));
    EXPECT_EQ(platform::Updater::newest_backup(dir.path()),
              folder.filePath(u"tallyhand-backup-v3"_s));
    QObject context;
    app::clear_rollback_marker_when_healthy(marker, &context, 1ms, dir.path());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !folder.exists(u"tallyhand-backup-v0"_s); }, 30'000));
    EXPECT_TRUE(QThreadPool::globalInstance()->waitForDone(30'000));
    EXPECT_EQ(folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot),
              QStringList({u"another"_s, u"tallyhand-backup-v2"_s, u"tallyhand-backup-v3"_s,
                           u"tallyhand-backup-v9"_s}));
    EXPECT_TRUE(folder.exists(u"another/plugins/a"_s));
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
