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

// `scripts/windows/test` runs the script for a payload.
TEST(BatchScript, ForAnExecutableSwapsAndStartsItUnderWineAndGoes)
{
    const QString wine = u"/usr/lib/wine/wine64"_s;
    if (!QFile::exists(wine))
        GTEST_SKIP() << "wine64 is needed";
    // A prefix that is made anew takes hundreds of megabytes; it stays with the build.
    qputenv("WINEPREFIX", TALLY_WINE_PREFIX);
    qputenv("WINEDEBUG", "-all");
    const QTemporaryDir folder;
    const QDir dir(folder.filePath(u"a & b^c"_s));
    ASSERT_TRUE(dir.mkpath(u"."_s) && dir.mkpath(QStringLiteral(TALLY_WINE_PREFIX)));
    const ExecutableSwap swap{.new_exe = u"Z:"_s + dir.filePath(u"new.exe"_s),
                              .current_exe = u"Z:"_s + dir.filePath(u"old.bat"_s)};
    const auto put = [&](const QString &name, const QByteArray &content) {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    };
    put(u"old.bat"_s, "@echo old>started.txt\r\n");
    put(u"new.exe"_s, "@echo new>started.txt\r\n");
    put(u"run.bat"_s, batch_for(swap, as_it_is).text);
    test::run_program(wine, {u"cmd"_s, u"/c"_s, u"run.bat"_s}, dir.path());
    const QString started = dir.filePath(u"started.txt"_s);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return platform::read_file(started).startsWith("new"); }, 60'000));
    EXPECT_EQ(dir.entryList(QDir::Files), QStringList({u"old.bat"_s, u"started.txt"_s}));
}

} // namespace
} // namespace tally::platform::Updater
