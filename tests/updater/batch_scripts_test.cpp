#include "platform/files/exact_files.h"
#include "platform/updater/install_scripts.h"
#include "support/print_qt.h"
#include "support/program_run.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;

QString as_it_is(const QString &path)
{
    return path;
}

const ExecutableSwap executable{
    .new_exe = u"C:/Program Files/Tally & Co/data/updates/tallyhand-new.exe"_s,
    .current_exe = u"C:/Program Files/Tally & Co/ledgerline-tallyhand.exe"_s,
    .elevate = true,
};
const PayloadSwap payload{
    .zip = u"C:/Program Files/Tally & Co/data/updates/payload.zip"_s,
    .current_exe = {},
    .old_version = u"v2.0-alfa.072"_s,
    .new_version = u"v2.0-alfa.073"_s,
    .elevate = true,
    .process_id = 4711,
    .install_dir = u"C:/Program Files/Tally & Co"_s,
    .staging_dir = u"C:/Program Files/Tally & Co/data/updates/staging"_s,
    .backup_dir = u"C:/Users/T^J & Co/Temp/tallyhand-backup-v2.0-alfa.072"_s,
    .data_dir = u"C:/Program Files/Tally & Co/data"_s,
    .log = u"C:/Program Files/Tally & Co/data/updates/install_update.log"_s,
    .marker = u"C:/Program Files/Tally & Co/data/updates/rollback-pending.txt"_s,
    .new_exe = u"C:/Program Files/Tally & Co/ledgerline-tallyhand.exe"_s,
};

TEST(BatchScript, IsTheTemplateByteByByte)
{
    EXPECT_EQ(batch_for(executable, as_it_is).text,
              platform::read_file(QStringLiteral(TALLY_EXPECTED "/executable.bat")));
    EXPECT_EQ(batch_for(payload, as_it_is).text,
              platform::read_file(QStringLiteral(TALLY_EXPECTED "/payload.bat")));
}

TEST(BatchScript, RefusesAPathThatALineCannotCarry)
{
    const auto is_refused = [](const char *name, bool elevate) {
        ExecutableSwap swap = executable;
        swap.elevate = elevate;
        swap.current_exe = u"C:/%1/a.exe"_s.arg(QString::fromUtf8(name));
        const Script script = batch_for(swap, as_it_is);
        EXPECT_NE(script.text.isEmpty(), script.refusal.isEmpty());
        return !script.refusal.isEmpty();
    };
    for (const char *name : {"100%", "a\"b", "a\nb", "a\rb", "Jürgen", "ł", "a\x7f"})
        EXPECT_TRUE(is_refused(name, false)) << name;
    for (const char *name : {"O'Neil", "a[1]", "a`b"}) {
        EXPECT_FALSE(is_refused(name, false)) << "fine between the quotes of a batch";
        EXPECT_TRUE(is_refused(name, true)) << "not so in PowerShell";
    }
    for (const char *name : {"a & b", "a^b", "(x86)", "a!b", "$a;b,c=d"})
        EXPECT_FALSE(is_refused(name, true)) << name;
    PayloadSwap unpacked = payload;
    unpacked.zip = u"C:/O'Neil/a.zip"_s;
    EXPECT_THAT(batch_for(unpacked, as_it_is).refusal.toStdString(), HasSubstr("C:/O'Neil/a.zip"));
}

TEST(SafePath, FallsBackToTheShortNameOfWhatExists)
{
    const QTemporaryDir folder;
    const QString dir = folder.filePath(u"Jürgen"_s);
    ASSERT_TRUE(QDir().mkpath(dir));
    const auto short_name = [&](const QString &path) {
        return path == dir ? u"C:/JRGEN~1"_s : QString();
    };
    EXPECT_EQ(safe_path(dir + u"/not/yet.log"_s, ScriptLine::Batch, short_name),
              u"C:\\JRGEN~1\\not\\yet.log"_s);
    EXPECT_EQ(safe_path(dir + u"/übel.log"_s, ScriptLine::Batch, short_name), std::nullopt);
    EXPECT_EQ(safe_path(u"D:/"_s, ScriptLine::Batch, as_it_is), u"D:\\."_s);
}

/// Runs batch files as Windows would, in a folder whose name trips over missing quotes.
class Wine : public testing::Test {
protected:
    void SetUp() override
    {
        if (!QFile::exists(u"/usr/lib/wine/wine64"_s))
            GTEST_SKIP() << "wine64 is needed";
        // One that is made anew takes hundreds of megabytes; it stays with the build.
        qputenv("WINEPREFIX", TALLY_WINE_PREFIX);
        qputenv("WINEDEBUG", "-all");
        ASSERT_TRUE(QDir().mkpath(QStringLiteral(TALLY_WINE_PREFIX)));
    }

    QString file(const QString &name) const { return folder_.filePath(u"a & b^c/"_s + name); }
    void put(const QString &name, const QByteArray &content) const
    {
        QFile out(file(name));
        QDir().mkpath(QFileInfo(out).path());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly) && out.write(content) == content.size());
    }
    void run(const QByteArray &script) const
    {
        put(u"run.bat"_s, script);
        test::run_program(u"/usr/lib/wine/wine64"_s, {u"cmd"_s, u"/c"_s, u"run.bat"_s}, file({}));
    }

    QTemporaryDir folder_;
};

TEST_F(Wine, TheScriptForAnExecutableSwapsAndStartsItAndGoes)
{
    put(u"old.bat"_s, "@echo old>started.txt\r\n");
    put(u"new.exe"_s, "@echo new>started.txt\r\n");
    const ExecutableSwap swap{.new_exe = u"Z:"_s + file(u"new.exe"_s),
                              .current_exe = u"Z:"_s + file(u"old.bat"_s)};
    run(batch_for(swap, as_it_is).text);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return platform::read_file(file(u"started.txt"_s)).startsWith("new"); }, 60'000));
    EXPECT_EQ(QDir(file({})).entryList(QDir::Files), QStringList({u"old.bat"_s, u"started.txt"_s}));
}

struct SwapCase {
    int unpack_code;
    int copy_code;
    const char *last_logged;
    const char *started; ///< what notes that it runs; "" if nothing is to
    const char *readme;  ///< what lies in the installation in the end
};

/// The script for a payload, in which xcopy stands in for PowerShell and for robocopy: of these
/// Wine has no more than the names.
class WineSwap : public Wine, public testing::WithParamInterface<SwapCase> {};
INSTANTIATE_TEST_SUITE_P(
    , WineSwap,
    testing::Values(SwapCase{1, 0, "] EXTRACT FAILED", "", "old"},
                    SwapCase{0, 8, "] SWAP FAILED ? restoring backup", "old  ", "old"},
                    SwapCase{0, 1, "] DONE", "new --post-update-check v2.0-alfa.073", "new"}));

TEST_P(WineSwap, EndsAsItShould)
{
    const SwapCase &outcome = GetParam();
    for (const char *version : {"old", "new"}) {
        const QString dir = version == QByteArray("new") ? u"../payload/"_s : QString();
        put(dir + u"tally.bat"_s, "@echo " + QByteArray(version) + " %1 %2>started.txt\r\n");
        put(dir + u"README"_s, version);
    }
    put(u"data/updates/payload.zip"_s, "packed");
    put(u"unpack.bat"_s, "@xcopy /E /I /Y /Q ..\\payload data\\updates\\staging >nul\r\n@exit " +
                             QByteArray::number(outcome.unpack_code));
    put(u"mirror.bat"_s,
        "@xcopy /E /I /Y /Q %1 %2 >nul\r\n@rmdir /S /Q \"..\\T^J & Co\\data\"\r\n@exit " +
            QByteArray::number(outcome.copy_code));
    const QString updates = u"Z:"_s + file(u"data/updates/"_s);
    PayloadSwap swap = payload;
    swap.elevate = false;
    swap.zip = updates + u"payload.zip"_s;
    swap.install_dir = u"Z:"_s + file({});
    swap.staging_dir = updates + u"staging"_s;
    swap.backup_dir = u"Z:"_s + folder_.filePath(u"T^J & Co"_s);
    swap.data_dir = u"Z:"_s + file(u"data"_s);
    swap.log = updates + u"update.log"_s;
    swap.marker = updates + u"marker"_s;
    swap.new_exe = u"Z:"_s + file(u"tally.bat"_s);
    run(batch_for(swap, as_it_is)
            .text.replace("powershell ", "cmd /c unpack.bat ")
            .replace("robocopy ", "cmd /c mirror.bat "));

    const bool is_new = outcome.readme == QByteArray("new");
    const bool has_swapped = outcome.unpack_code == 0;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return platform::read_file(file(u"started.txt"_s)).startsWith(outcome.started); },
        60'000));
    EXPECT_EQ(QFile::exists(file(u"started.txt"_s)), has_swapped);
    EXPECT_EQ(platform::read_file(file(u"README"_s)), outcome.readme);
    EXPECT_EQ(platform::read_file(folder_.filePath(u"T^J & Co/README"_s)),
              has_swapped ? "old" : "");
    const std::string log = platform::read_file(file(u"data/updates/update.log"_s)).toStdString();
    for (const std::string &text :
         {std::string("] START v2.0-alfa.072 -> v2.0-alfa.073 pid=4711"),
          std::string(has_swapped ? "\\T^J & Co \r\n" : ""), std::string(outcome.last_logged)})
        EXPECT_THAT(log, HasSubstr(text));
    EXPECT_EQ(platform::read_file(file(u"data/updates/marker"_s)).trimmed(),
              is_new ? "v2.0-alfa.073" : "");
    EXPECT_EQ(QFile::exists(file(u"data/updates/payload.zip"_s)), !is_new);
    EXPECT_EQ(QFile::exists(file(u"run.bat"_s)), !is_new);
}

} // namespace
} // namespace tally::platform::Updater
