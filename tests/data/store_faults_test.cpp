#include "platform/files/exact_files.h"
#include "support/file_size_limit.h"
#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/store_dump.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"
#include "support/unprivileged.h"

#include <QFileInfo>
#include <QRandomGenerator>

#include <gmock/gmock.h>

#include <csignal>
#include <functional>
#include <optional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::AnyOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

std::vector<data::LootEntry> much_loot()
{
    return std::vector<data::LootEntry>(20, item(1, 2, 3));
}

void fill(data::TallyDb &db, int mails)
{
    for (int i = 0; i < mails; ++i)
        add_each_kind(db, u"Persistent.Mail.%1"_s.arg(i), 1000.0 * i, 1, 20);
}

/// What a run of the program does with its store, each part on its own as its views and imports do.
std::vector<std::string> failures_of_all_members(data::TallyDb &db)
{
    const auto name = u"Persistent.Mail.1"_s;
    const std::vector<std::function<void()>> members = {
        [&] { db.init_schema(); },
        [&] { db.report_exists(name); },
        [&] { db.field_report_exists(name); },
        [&] { db.trial_report_exists(name); },
        [&] { db.fort_report_exists(name); },
        [&] { db.insert_report(name, battle(1.0, {battle_round(1.0, much_loot())}), 1.0); },
        [&] { db.insert_field_report(name, field_fight({u"Bo"_s}), 1.0); },
        [&] { db.insert_trial_report(name, trial({participant(u"Bo"_s, much_loot())}), 1.0); },
        [&] { db.insert_fort_report(name, fort(1.0, much_loot()), 1.0); },
        [&] { db.link_fort_to_chains(); },
        [&] { db.set_field_favorite(name, true); },
        [&] { db.is_field_favorite(name); },
        [&] { db.log_honor_summary(1.0, 1, 1.0, 1, 1, 1, 1); },
        [&] { db.recent_honor_log(10); },
        [&] { db.set_setting(u"theme"_s, u"light"_s); },
        [&] { db.get_setting(u"theme"_s); },
        [&] { db.players(); },
        [&] { db.chain_file_count(); },
        [&] { db.field_report_count(); },
    };
    std::vector<std::string> failures;
    for (const auto &member : members) {
        if (auto failure = failure_of(member); !failure.empty())
            failures.push_back(failure);
    }
    return failures;
}

/// A store of some hundred kilobytes, closed.
QByteArray whole_store()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"tally.db"_s);
    {
        data::TallyDb db(path);
        db.init_schema();
        fill(db, 60);
    }
    return platform::read_file(path);
}

struct FileOf {
    explicit FileOf(const QByteArray &bytes) : path(folder.add(u"tally.db"_s, bytes)) {}
    QByteArray bytes() const { return platform::read_file(path); }
    TempMails folder;
    QString path;
};

std::string integrity(const QString &path)
{
    return PlainConnection(path).text(u"PRAGMA integrity_check"_s).toStdString();
}

/// Inserts trials until one fails; the store must hold exactly the ones before it.
std::string fill_until_failure(TempStore &store)
{
    for (int i = 0; i < 1000; ++i) {
        const QString before = store_dump(store.db);
        const auto failure = failure_of([&] {
            std::vector<data::TrialParticipant> people(200, participant(u"Bo"_s, much_loot()));
            store.db.insert_trial_report(u"big-%1"_s.arg(i), trial(people), 1.0);
        });
        if (failure.empty())
            continue;
        EXPECT_EQ(store_dump(store.db), before);
        return failure;
    }
    return {};
}

} // namespace

TEST(StoreFaults, GarbageIsRefusedAndLeftAsItIs)
{
    const QByteArray bytes = QByteArray("no database, just a text. ").repeated(1000);
    const FileOf file(bytes);
    {
        data::TallyDb db(file.path);
        EXPECT_THAT(failure_of([&] { db.init_schema(); }),
                    AllOf(StartsWith("TallyDb fatal: "), HasSubstr("file is not a database")));
        EXPECT_THAT(failures_of_all_members(db), SizeIs(19));
    }
    EXPECT_EQ(file.bytes(), bytes);
}

TEST(StoreFaults, ACutFileGivesErrorsNotCrashes)
{
    const QByteArray whole = whole_store();
    for (const double share : {0.001, 0.03, 0.3, 0.5, 0.9}) {
        const FileOf file(whole.left(static_cast<qsizetype>(share * double(whole.size()))));
        data::TallyDb db(file.path);
        const auto failures = failures_of_all_members(db);
        EXPECT_THAT(failures, testing::Not(IsEmpty())) << share;
        EXPECT_THAT(failures, Each(AllOf(StartsWith("TallyDb fatal: "),
                                         AnyOf(HasSubstr("malformed"), HasSubstr("not a database"),
                                               HasSubstr("disk I/O error")))))
            << share;
    }
}

TEST(StoreFaults, FlippedBytesGiveErrorsOrAnswersNotCrashes)
{
    const QByteArray whole = whole_store();
    int damaged = 0;
    for (quint32 seed = 0; seed < 25; ++seed) { // few flips, then more and more
        QRandomGenerator random(seed);
        QByteArray bytes = whole;
        for (quint32 i = 0; i <= seed * seed; ++i)
            bytes[random.bounded(100, int(bytes.size()))] = static_cast<char>(random.bounded(256));
        const FileOf file(bytes);
        data::TallyDb db(file.path);
        const auto failures = failures_of_all_members(db);
        EXPECT_THAT(failures, Each(StartsWith("TallyDb fatal: "))) << "seed " << seed;
        damaged += failures.empty() ? 0 : 1;
    }
    EXPECT_GT(damaged, 10);
}

TEST(StoreFaults, AStoreThatAnotherProgramHoldsCanBeReadAndLaterWritten)
{
    TempStore store;
    fill(store.db, 2);
    store.db.insert_report(u"late"_s, battle(5e6, {battle_round(1.0)}), 1.0);
    store.db.insert_fort_report(u"late"_s, fort(5e6), 1.0);
    const QString before = store_dump(store.db);
    text_of(store.db.connection(), u"PRAGMA busy_timeout = 1"_s);
    const PlainConnection other(store.path);
    other.rows(u"BEGIN IMMEDIATE"_s);
    const auto locked = AllOf(StartsWith("TallyDb fatal: "), HasSubstr("database is locked"));
    EXPECT_THAT(failures_of_all_members(store.db), AllOf(SizeIs(9), Each(locked)));
    EXPECT_EQ(store_dump(store.db), before);
    other.rows(u"ROLLBACK"_s);
    EXPECT_THAT(failures_of_all_members(store.db), IsEmpty());
    EXPECT_NE(store_dump(store.db), before);
}

TEST(StoreFaults, AReadOnlyStoreCanBeReadAndRefusesToBeWritten)
{
    TempStore store;
    fill(store.db, 2);
    const QString before = store_dump(store.db);
    ASSERT_EQ(chmod(qPrintable(store.folder.path()), 0755), 0);
    for (const auto &suffix : {u""_s, u"-wal"_s, u"-shm"_s})
        ASSERT_EQ(chmod(qPrintable(store.path + suffix), 0444), 0);
    {
        const Unprivileged user;
        data::TallyDb db(store.path);
        EXPECT_THAT(failure_of([&] { db.set_setting(u"theme"_s, u"dark"_s); }),
                    AllOf(StartsWith("TallyDb fatal: exec failed for ["),
                          HasSubstr("attempt to write a readonly database")));
        EXPECT_THAT(failures_of_all_members(db), Each(StartsWith("TallyDb fatal: ")));
        EXPECT_EQ(store_dump(db), before);
    }
    EXPECT_EQ(store_dump(store.db), before);
}

// Even reading needs files beside the store that may be made.
TEST(StoreFaults, AReadOnlyFolderGivesErrorsAndTheStoreStaysAsItIs)
{
    const FileOf file(whole_store());
    const QByteArray before = file.bytes();
    ASSERT_EQ(chmod(qPrintable(file.path), 0444), 0);
    ASSERT_EQ(chmod(qPrintable(file.folder.path()), 0555), 0);
    {
        const Unprivileged user;
        data::TallyDb db(file.path);
        EXPECT_THAT(failures_of_all_members(db),
                    AllOf(SizeIs(19), Each(StartsWith("TallyDb fatal: "))));
    }
    ASSERT_EQ(chmod(qPrintable(file.folder.path()), 0755), 0);
    EXPECT_EQ(file.bytes(), before);
}

TEST(StoreFaults, AFullStoreOrDiskKeepsWhatItHasAndGoesOnWhenThereIsRoom)
{
    const auto is_full = AllOf(StartsWith("TallyDb fatal: "),
                               AnyOf(HasSubstr("disk I/O error"), HasSubstr("disk is full")));
    TempStore store;
    fill(store.db, 5);
    text_of(store.db.connection(), u"PRAGMA max_page_count = 150"_s);
    EXPECT_THAT(fill_until_failure(store), is_full);
    EXPECT_EQ(integrity(store.path), "ok");
    text_of(store.db.connection(), u"PRAGMA max_page_count = 100000"_s);
    {
        const FileSizeLimit limit(QFileInfo(store.path + u"-wal"_s).size() + 100000);
        EXPECT_THAT(fill_until_failure(store), is_full);
    }
    EXPECT_EQ(integrity(store.path), "ok");
    fill(store.db, 8);
    EXPECT_EQ(store.db.chain_file_count(), 8);
}

// The child writes a byte for each mail that it has stored, the parent kills it after some of them:
// somewhere in the middle of the next ones.
TEST(StoreFaults, AKilledProgramLeavesWholeReportsOnly)
{
    for (const int stored : {1, 7, 20}) {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"tally.db"_s);
        int pipe_ends[2];
        ASSERT_EQ(pipe(pipe_ends), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            close(pipe_ends[0]);
            data::TallyDb db(path);
            db.init_schema();
            for (int i = 0;; ++i) {
                add_each_kind(db, QString::number(i), 1.0, 10, 20);
                if (write(pipe_ends[1], "x", 1) != 1)
                    _exit(1);
            }
        }
        close(pipe_ends[1]);
        char byte = 0;
        for (int i = 0; i < stored; ++i)
            ASSERT_EQ(read(pipe_ends[0], &byte, 1), 1);
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        close(pipe_ends[0]);

        data::TallyDb db(path);
        db.init_schema();
        EXPECT_GE(db.chain_file_count(), stored);
        EXPECT_EQ(text_of(db.connection(),
                          u"SELECT (SELECT count(*) FROM trial_loot) % 200, (SELECT count(*) FROM "
                          "trial_loot) / 200 - (SELECT count(*) FROM trial_reports), (SELECT "
                          "count(*) FROM loot) - 200 * (SELECT count(DISTINCT file_name) FROM "
                          "reports), (SELECT "
                          "count(*) FROM fort_loot) - 20 * (SELECT count(*) FROM fort_reports)"_s),
                  u"0|0|0|0");
        EXPECT_EQ(integrity(path), "ok");
    }
}
