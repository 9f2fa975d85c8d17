#include "support/plain_connection.h"
#include "support/program_run.h"
#include "support/store_dump.h"

#include "sample_world.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

namespace tally::app {
namespace {

using namespace Qt::StringLiterals;
const QString executable = QStringLiteral(TALLY_EXECUTABLE);

QString store_in(const QTemporaryDir &folder)
{
    return folder.filePath(u"tally-import.db"_s);
}

/// Sample mails, and what one undisturbed import makes of them.
class ImportFaults : public testing::Test {
protected:
    ImportFaults()
    {
        sample::write_mail_folder({.seed = 7, .days = 2, .players = 2, .count = 120},
                                  mails_.path());
        QElapsedTimer timer;
        timer.start();
        import(clean_);
        clean_milliseconds_ = timer.elapsed();
        clean_dump_ = test::store_dump(store_in(clean_));
    }

    QStringList arguments() const { return {u"--import-only"_s, mails_.path()}; }

    void import(const QTemporaryDir &folder) const
    {
        const auto result = test::run_program(executable, arguments(), folder.path());
        EXPECT_EQ(result.exit_code, 0) << result.error_output.constData();
    }

    void expect_clean_rows(const QTemporaryDir &folder) const
    {
        EXPECT_EQ(test::PlainConnection(store_in(folder)).text(u"PRAGMA integrity_check"_s), u"ok");
        EXPECT_EQ(test::store_dump(store_in(folder)).toStdString(), clean_dump_.toStdString());
    }

    QTemporaryDir mails_;
    QTemporaryDir clean_;
    qint64 clean_milliseconds_ = 0;
    QString clean_dump_;
};

TEST_F(ImportFaults, KilledAtAnyMomentAndStartedAgainEndsInTheSameRows)
{
    ASSERT_GT(clean_dump_.count(u'\n'), 120);
    constexpr int kills = 30;
    std::mt19937 random(20240917);
    std::uniform_int_distribution<int> moment(0, static_cast<int>(clean_milliseconds_));
    int killed_in_work = 0;
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        const QTemporaryDir folder;
        QProcess process;
        test::start_program(process, executable, arguments(), folder.path());
        if (!process.waitForFinished(moment(random)))
            ++killed_in_work;
        process.kill();
        process.waitForFinished();
        import(folder);
        expect_clean_rows(folder);
    }
    EXPECT_GT(killed_in_work, kills / 3) << "too few kills hit the import at work";
}

TEST_F(ImportFaults, TwoImportsIntoOneStoreAtOnceMissAndDoubleNothing)
{
    const QTemporaryDir folder;
    QProcess first;
    QProcess second;
    test::start_program(first, executable, arguments(), folder.path());
    test::start_program(second, executable, arguments(), folder.path());
    for (QProcess *process : {&first, &second}) {
        ASSERT_TRUE(process->waitForFinished(60'000));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().constData();
    }
    expect_clean_rows(folder);
}

} // namespace
} // namespace tally::app
