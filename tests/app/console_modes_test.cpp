#include "mail_parts.h"
#include "platform/files/exact_files.h"
#include "support/file_size_limit.h"
#include "support/plain_connection.h"
#include "support/program_run.h"
#include "support/small_mails.h"
#include "support/temp_mails.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace tally::app {
namespace {

using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const QString executable = QStringLiteral(TALLY_EXECUTABLE);

class ConsoleModes : public testing::Test {
protected:
    test::ProgramResult run(const QStringList &arguments) const
    {
        return test::run_program(executable, arguments, dir_.path());
    }

    std::string log(const QString &name) const
    {
        return platform::read_file(dir_.filePath(name)).toStdString();
    }

    QTemporaryDir dir_;
};

TEST_F(ConsoleModes, SelfTestsPassOnAnInstalledCopyAndLeaveTheirLogs)
{
    for (const char *mode : {"parser", "master", "db"}) {
        const QString name = QString::fromLatin1(mode);
        const test::ProgramResult result = run({u"--test-%1"_s.arg(name)});
        EXPECT_EQ(result.exit_code, 0) << result.error_output.constData();
        const std::string text = log(u"smoke-test-%1.log"_s.arg(name));
        EXPECT_THAT(text, HasSubstr("smoke test PASSED =="));
        EXPECT_THAT(result.error_output.toStdString(), HasSubstr(text));
    }
    EXPECT_THAT(log(u"smoke-test-parser.log"_s),
                HasSubstr("parsed: type=Battle  level=45\nfind_first(level) = 45 OK\n"));
}

TEST_F(ConsoleModes, ImportOfNothingOrNowhereStillReports)
{
    const QTemporaryDir mails;
    EXPECT_EQ(run({u"--import-only"_s, mails.path()}).exit_code, 0);
    EXPECT_THAT(log(u"import-only.log"_s),
                HasSubstr("init_schema() needs_hard=false\n"
                          "  progress: scanned=0/0  imported=0\n"
                          "stats: scanned=0  imported=0  errors=0\n"
                          "db counts: reports rows=0  field_reports rows=0  "
                          "distinct chain files=0\n"
                          "players in chain reports: 0\n"
                          "== --import-only DONE ==\n"));
    EXPECT_EQ(run({u"--import-only"_s, dir_.filePath(u"missing"_s)}).exit_code, 0);
    EXPECT_THAT(
        log(u"import-only.log"_s),
        AllOf(HasSubstr("stats: scanned=0  imported=0  errors=1\n"), Not(HasSubstr("progress"))));
}

TEST_F(ConsoleModes, ImportNamesAPlayerWhateverHisNameLooksLike)
{
    sample::Random random(1);
    sample::Chain chain;
    chain.head = random_head(random);
    chain.head.owner.id = 77;
    chain.head.owner.name = "%1%2%3";
    chain.rounds = random_rounds(random, 2);
    const test::TempMails mails;
    mails.add(u"Persistent.Mail.1"_s, chain_mail(random, chain));
    EXPECT_EQ(run({u"--import-only"_s, mails.path()}).exit_code, 0);
    EXPECT_THAT(log(u"import-only.log"_s), HasSubstr("  - id=77 name=%1%2%3 files=1\n"));
}

TEST_F(ConsoleModes, ImportIntoADamagedStoreSaysSoAndLeavesItAlone)
{
    const QString store = dir_.filePath(u"tally-import.db"_s);
    const QByteArray damaged(8192, 'x');
    QFile file(store);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(damaged) == damaged.size());
    file.close();

    const test::ProgramResult result = run({u"--import-only"_s, dir_.path()});
    EXPECT_FALSE(result.crashed);
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_THAT(log(u"import-only.log"_s), HasSubstr("EXCEPTION: TallyDb fatal: "));
    EXPECT_EQ(platform::read_file(store), damaged);
}

TEST_F(ConsoleModes, TheStoreTestMakesATemporaryFolderThatIsMissing)
{
    const QByteArray before = qgetenv("TMPDIR");
    const QString folder = dir_.filePath(u"new/tmp"_s);
    qputenv("TMPDIR", QFile::encodeName(folder));
    EXPECT_EQ(run({u"--test-db"_s}).exit_code, 0);
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    EXPECT_THAT(log(u"smoke-test-db.log"_s),
                HasSubstr(u"db_path = %1/tallyhand-smoke-"_s.arg(folder).toStdString()));
}

TEST_F(ConsoleModes, AFullDiskLeavesTheFormerLog)
{
    run({u"--test-parser"_s});
    const std::string former = log(u"smoke-test-parser.log"_s);
    ASSERT_FALSE(former.empty());
    const test::FileSizeLimit full_disk(10);
    EXPECT_EQ(run({u"--test-parser"_s}).exit_code, 0);
    EXPECT_EQ(log(u"smoke-test-parser.log"_s), former);
}

TEST_F(ConsoleModes, MailsThatCouldNotBeStoredAreToldBehindTheCounters)
{
    const test::TempMails mails;
    const QStringList import = {u"--import-only"_s, mails.path()};
    EXPECT_EQ(run(import).exit_code, 0);
    test::PlainConnection(dir_.filePath(u"tally-import.db"_s))
        .rows(u"CREATE TRIGGER full BEFORE INSERT ON fort_loot BEGIN SELECT RAISE(ABORT, 'no "
              "room'); END"_s);
    mails.add(u"Persistent.Mail.1"_s, test::fort_mail());
    EXPECT_EQ(run(import).exit_code, 0);
    EXPECT_THAT(log(u"import-only.log"_s),
                HasSubstr("stats: scanned=1  imported=0  errors=0\n"
                          "WARNING: 1 mail could not be stored (no room"));
}

TEST_F(ConsoleModes, ImportWithoutAFolderAndHelpEndWithTheirCodes)
{
    EXPECT_EQ(run({u"word"_s, u"--import-only"_s}).exit_code, 2);
    const test::ProgramResult help = run({u"-h"_s});
    EXPECT_EQ(help.exit_code, 0);
    EXPECT_THAT(help.error_output.toStdString(),
                HasSubstr("Ledgerline - Tallyhand v2.0-alfa.072\n\nusage:\n"));
}

} // namespace
} // namespace tally::app
