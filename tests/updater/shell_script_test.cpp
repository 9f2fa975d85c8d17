#include "support/installation.h"
#include "support/print_qt.h"
#include "support/zip_builder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;
using test::Installation;
using testing::HasSubstr;

const QString log_name = u"data/updates/install_update.log"_s;
const QString marker_name = u"data/updates/rollback-pending.txt"_s;

class ShellScript : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char *tool : {"zip", "unzip"}) {
            if (QStandardPaths::findExecutable(QLatin1StringView(tool)).isEmpty())
                GTEST_SKIP() << tool << " is needed";
        }
    }

    DownloadResult prepare(const QString &zip, InstallTools tools)
    {
        return install_from_payload_zip(zip, installed_.program_path(), u"v1"_s, u"v2"_s, false,
                                        tools);
    }
    /// Writes the script for a new payload.
    void prepare()
    {
        const DownloadResult result = prepare(installed_.make_payload(), installed_.tools(script_));
        ASSERT_TRUE(result.ok) << result.error.toStdString();
    }

    /// Runs the script to its end. \param before a line that is run first
    int run(const QString &before = {})
    {
        QProcess process;
        process.start(u"/bin/sh"_s, {u"-c"_s, before + u"\nexec /bin/sh \"$0\""_s, script_});
        EXPECT_TRUE(process.waitForFinished(60'000));
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    std::string log() const { return installed_.content(log_name).toStdString(); }
    QString backup(const QString &name) const
    {
        return installed_.temp_dir() + u"/tallyhand-backup-v1/"_s + name;
    }

    Installation installed_;
    QString script_;
};

TEST_F(ShellScript, SwapsTheInstallationAndStartsTheNewVersion)
{
    prepare();
    const QByteArray text = platform::read_file(script_);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(installed_.started(), "new --post-update-check v2");
    EXPECT_EQ(installed_.content(u"README.md"_s), "of the new");
    EXPECT_EQ(installed_.content(u"plugins/a b/extra.so"_s), "extra");
    EXPECT_EQ(installed_.content(marker_name), "v2\n");
    EXPECT_TRUE(installed_.data_is_untouched());
    EXPECT_EQ(platform::read_file(backup(u"README.md"_s)), "of the old");
    EXPECT_FALSE(QFile::exists(backup(u"mine.txt"_s))) << "what stays needs none";
    EXPECT_EQ(QFile::permissions(backup(u"."_s)) & (QFile::ReadGroup | QFile::ReadOther), 0);
    EXPECT_EQ(
        QDir(installed_.file(u"data/updates"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList({u"install_update.log"_s, u"install_update.sh.dump"_s, u"older.log"_s,
                     u"rollback-pending.txt"_s}));
    EXPECT_EQ(installed_.content(u"data/updates/install_update.sh.dump"_s), text);
    for (const char *step :
         {"] START v1 -> v2 pid=", "] proc_gone", "] extract zip -> staging", "] backup -> ",
          "] swap staging -> install", "] launch new exe", "] DONE"})
        EXPECT_THAT(log(), HasSubstr(step));
}

TEST_F(ShellScript, AProgramInTheFolderSystemFindsTheNewVersionToo)
{
    const QString old = installed_.file(u"System/ledgerline-tallyhand"_s);
    Installation::put_at(old, installed_.program("old"));
    QFile::remove(installed_.program_path());
    const DownloadResult result = install_from_payload_zip(
        installed_.make_payload(), old, u"v1"_s, u"v2"_s, false, installed_.tools(script_));
    ASSERT_TRUE(result.ok) << result.error.toStdString();
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(installed_.started(), "new --post-update-check v2");
    EXPECT_EQ(QFileInfo(old).canonicalFilePath(), installed_.program_path());
    EXPECT_EQ(platform::read_file(backup(u"System/ledgerline-tallyhand"_s)),
              installed_.program("old"));
}

TEST_F(ShellScript, WaitsForTheProgramAndKillsOneThatDoesNotEnd)
{
    QProcess program;
    program.start(u"sleep"_s, {u"1000"_s});
    ASSERT_TRUE(program.waitForStarted());
    InstallTools tools = installed_.tools(script_);
    tools.process_id = program.processId();
    ASSERT_TRUE(prepare(installed_.make_payload(), tools).ok);
    // The polls take no time, and the program is left a zombie until the end.
    EXPECT_EQ(run(u"mkdir \"$0.bin\" && ln -s /bin/true \"$0.bin/sleep\"; PATH=\"$0.bin:$PATH\""_s),
              0);
    EXPECT_THAT(log(), HasSubstr("] proc_gone (waited=60s)"));
    EXPECT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::CrashExit);
}

TEST_F(ShellScript, APayloadThatCannotBeUnpackedLeavesTheOldVersionRunning)
{
    prepare();
    const QString zip = installed_.file(u"data/updates/payload.zip"_s);
    const QByteArray good = platform::read_file(zip);
    Installation::put_at(zip, good.first(good.size() / 2));
    const QByteArray script = platform::read_file(script_);
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(installed_.started(), "old ");
    EXPECT_THAT(log(), HasSubstr("] EXTRACT FAILED"));
    EXPECT_EQ(installed_.content(u"README.md"_s), "of the old");
    EXPECT_FALSE(QFile::exists(installed_.file(marker_name)));
    // The next try is not disturbed by what this one left.
    Installation::put_at(zip, good);
    installed_.put(u"data/updates/staging/stale"_s, "x");
    Installation::put_at(script_, script);
    QFile::remove(installed_.started_file());
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(installed_.started(), "new --post-update-check v2");
    EXPECT_FALSE(QFile::exists(installed_.file(u"stale"_s)));
}

TEST_F(ShellScript, ASwapThatFailsHalfWayPutsTheOldVersionBack)
{
    // The last file cannot take its place, when all others have.
    prepare();
    QFile::remove(installed_.program_path());
    installed_.put(u"ledgerline-tallyhand/in the way"_s, "x");
    EXPECT_EQ(run(), 2);
    EXPECT_THAT(log(), HasSubstr("] SWAP FAILED — restoring backup"));
    EXPECT_EQ(installed_.content(u"README.md"_s), "of the old");
    EXPECT_FALSE(QFile::exists(installed_.file(u"plugins/a b/extra.so"_s)));
    EXPECT_FALSE(QFile::exists(installed_.file(marker_name)));
    EXPECT_EQ(installed_.temporary_files(), QStringList());
    EXPECT_TRUE(installed_.data_is_untouched());
}

TEST_F(ShellScript, AFullDiskChangesNothing)
{
    prepare();
    // Room for unpacking, none for the copies beside.
    EXPECT_EQ(
        run(u"mkdir \"$0.bin\" && printf '#!/bin/sh\\ncase \"$*\" in *tally-new) exit 1;; esac\\n"
            "exec /bin/cp \"$@\"' >\"$0.bin/cp\" && chmod +x \"$0.bin/cp\"; PATH=\"$0.bin:$PATH\""_s),
        1);
    EXPECT_EQ(installed_.started(), "old ");
    EXPECT_THAT(log(), HasSubstr("nothing was changed"));
    EXPECT_EQ(installed_.temporary_files(), QStringList());
}

TEST_F(ShellScript, SomebodyElsesFolderIsNoBackup)
{
    prepare();
    // In a shared folder anybody may have made it before.
    EXPECT_EQ(
        run(u"mkdir \"$0.bin\" && ln -s /bin/false \"$0.bin/mkdir\" && "
            "printf '#!/bin/sh\\ncase \"$*\" in *-m*) exit 1;; esac\\nexec /bin/mkdir \"$@\"' "
            ">\"$0.bin/m\" && mv \"$0.bin/m\" \"$0.bin/mkdir\" && chmod +x \"$0.bin/mkdir\"; "
            "PATH=\"$0.bin:$PATH\""_s),
        1);
    EXPECT_EQ(installed_.started(), "old ");
    EXPECT_THAT(log(), HasSubstr("] BACKUP FAILED"));
}

/// Kills the script before or after the n-th tool that it calls, a copy perhaps half written.
const QString killer =
    u"mkdir -p \"$0.bin\"; for tool in rm mkdir unzip chmod find cp mv ln tail sed; do\n"
    "cat >\"$0.bin/$tool\" <<'END'\n"
    "#!/bin/sh\n"
    "self=$0; dir=${self%/*}; tool=${self##*/}\n"
    "echo x >>\"$dir/count\"\n"
    "if [ $(wc -l <\"$dir/count\") = \"$KILL_AT\" ]; then\n"
    "  case $KILL_WHEN$tool in\n"
    "  after*) PATH=${PATH#*:} \"$tool\" \"$@\" ;;\n"
    "  beforecp) for last; do :; done; printf '#!/bin' >\"$last\" ;;\n"
    "  esac\n"
    "  kill -9 $PPID; exit 1\n"
    "fi\n"
    "PATH=${PATH#*:} exec \"$tool\" \"$@\"\n"
    "END\n"
    "chmod +x \"$0.bin/$tool\"; done; PATH=\"$0.bin:$PATH\""_s;

class KilledScript : public ShellScript, public testing::WithParamInterface<const char *> {};
INSTANTIATE_TEST_SUITE_P(, KilledScript, testing::Values("before", "after"),
                         [](const auto &tested) { return std::string(tested.param); });

TEST_P(KilledScript, LeavesAnInstallationThatStartsAtEveryStep)
{
    int steps = 0;
    bool was_new = false;
    for (int end = -1; end != 0; ++steps) {
        ASSERT_LT(steps, 200);
        Installation fresh;
        const DownloadResult result =
            install_from_payload_zip(fresh.make_payload(), fresh.program_path(), u"v1"_s, u"v2"_s,
                                     false, fresh.tools(script_));
        ASSERT_TRUE(result.ok);
        const QByteArray script = platform::read_file(script_);
        end = run(u"export KILL_AT=%1 KILL_WHEN=%2\n"_s.arg(steps + 1).arg(
                      QLatin1StringView(GetParam())) +
                  killer);
        const QByteArray version = fresh.start().split(' ').constFirst();
        EXPECT_TRUE(version == "old" || version == "new") << steps;
        EXPECT_TRUE(version == "new" || !was_new) << "a later step undoes an earlier one";
        was_new = version == "new";
        EXPECT_TRUE(fresh.data_is_untouched()) << steps;
        if (was_new || end == 0)
            continue;
        // Whoever tries again gets there.
        Installation::put_at(script_, script);
        EXPECT_EQ(run(), 0) << steps;
        EXPECT_TRUE(fresh.start().startsWith("new")) << steps;
    }
    EXPECT_TRUE(was_new);
    EXPECT_GT(steps, 20);
}

TEST(ExecutableScript, ReplacesTheProgramAndStartsIt)
{
    const Installation installed;
    const QString update = installed.file(u"data/updates/tallyhand-new.exe"_s);
    QString script;
    EXPECT_EQ(
        install_and_restart(update, installed.program_path(), false, installed.tools(script)).error,
        u"New exe not found: "_s + update);
    Installation::put_at(update, installed.program("new"));
    QFile(update).setPermissions(QFile::ReadOwner);
    ASSERT_TRUE(
        install_and_restart(update, installed.program_path(), false, installed.tools(script)).ok);
    EXPECT_EQ(QProcess::execute(u"/bin/sh"_s, {script}), 0);
    EXPECT_EQ(installed.started(), "new ");
    EXPECT_TRUE(installed.data_is_untouched());
    EXPECT_FALSE(QFile::exists(update));
    EXPECT_FALSE(QFile::exists(script));
}

class InstallRefusal : public ShellScript {
protected:
    std::string refusal(const QString &zip, const QString &old_version, const QString &version,
                        const InstallTools &tools)
    {
        const DownloadResult result = install_from_payload_zip(zip, installed_.program_path(),
                                                               old_version, version, false, tools);
        EXPECT_FALSE(result.ok);
        return result.error.toStdString();
    }
};

TEST_F(InstallRefusal, ComesBeforeAnythingIsWritten)
{
    const InstallTools tools = installed_.tools(script_);
    const QString zip = installed_.make_payload();
    const QString none = installed_.file(u"none.zip"_s);
    EXPECT_EQ(refusal(none, u"v1"_s, u"v2"_s, tools),
              "Payload zip not found: " + none.toStdString());
    EXPECT_EQ(refusal(zip, u"v2"_s, u"v1"_s, tools), "v1 is not newer than v2");
    EXPECT_EQ(refusal(zip, u"v2"_s, u"v2"_s, tools), "v2 is not newer than v2");
    EXPECT_THAT(refusal(zip, u"v1"_s, u"v2 & x"_s, tools), HasSubstr("is no version"));
    Installation::put_at(none, test::build_zip({{"../ledgerline-tallyhand"}}));
    EXPECT_THAT(refusal(none, u"v1"_s, u"v2"_s, tools), HasSubstr("The payload is refused: "));
    InstallTools windows = tools;
    windows.payload_script = [](const PayloadSwap &swap) {
        return batch_for(swap, [](const QString &) { return QString(); });
    };
    EXPECT_THAT(refusal(zip, u"v1"_s, u"v2"_s, windows), HasSubstr("cannot carry"));
    EXPECT_THAT(
        obstacle_to(UpdateForm::Payload, installed_.program_path(), false, windows).toStdString(),
        HasSubstr("cannot carry"));
    EXPECT_EQ(obstacle_to(UpdateForm::Payload, installed_.program_path(), false, tools), QString());
    EXPECT_EQ(script_, QString());
    EXPECT_FALSE(QFile::exists(installed_.file(u"data/updates/install_update.sh"_s)));

    InstallTools stuck = tools;
    stuck.start = [](const QString &) {
        return false;
    };
    EXPECT_EQ(refusal(zip, u"v1"_s, u"v2"_s, stuck), "Cannot spawn install bat");
    const QString script = installed_.file(u"data/updates/install_update.sh"_s);
    QFile::remove(script);
    QDir().mkpath(script);
    EXPECT_EQ(refusal(zip, u"v1"_s, u"v2"_s, tools), "Cannot write bat: " + script.toStdString());
}

TEST_F(InstallRefusal, WithoutUnzipNoPayloadIsEvenDownloaded)
{
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nowhere");
    const QString program = installed_.program_path();
    EXPECT_THAT(obstacle_to(UpdateForm::Payload, program, false).toStdString(), HasSubstr("unzip"));
    EXPECT_EQ(obstacle_to(UpdateForm::Executable, program, false), QString());
    qputenv("PATH", path);
}

} // namespace
} // namespace tally::platform::Updater
