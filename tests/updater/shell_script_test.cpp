#include "support/installation.h"
#include "support/print_qt.h"

#include <QStandardPaths>

#include <gmock/gmock.h>

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
        for (const QString &tool : {u"zip"_s, u"unzip"_s}) {
            if (QStandardPaths::findExecutable(tool).isEmpty())
                GTEST_SKIP() << tool.toStdString() << " is needed";
        }
    }

    DownloadResult prepare(const InstallTools &tools, const QString &version = u"v2"_s)
    {
        return install_from_payload_zip(installed_.zip(), installed_.program_path(), u"v1"_s,
                                        version, false, tools);
    }
    /// Runs the script to its end, with tools of its own in front of the system's.
    int run(const QByteArray &make_tools = {})
    {
        QProcess process;
        process.start(u"/bin/sh"_s,
                      {u"-c"_s,
                       u"mkdir -p \"$0.bin\"; cd \"$0.bin\"\n"_s + QString::fromLatin1(make_tools) +
                           u"\ncd /; PATH=\"$0.bin:$PATH\" exec /bin/sh \"$0\""_s,
                       script_});
        EXPECT_TRUE(process.waitForFinished(60'000));
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    std::string log() const { return installed_.content(log_name).toStdString(); }

    Installation installed_;
    QString script_;
};

TEST_F(ShellScript, SwapsTheInstallationAndStartsTheNewVersion)
{
    ASSERT_TRUE(prepare(installed_.tools(script_)).ok);
    const QByteArray text = platform::read_file(script_);
    // Some unpackers go by other names than those of the zip's directory.
    EXPECT_EQ(run("printf '#!/bin/sh\n/usr/bin/unzip \"$@\"; mkdir \"$5/data\"; "
                  "echo bad >\"$5/data/tally.db\"; ln -s /etc/passwd \"$5/link\"' >unzip\n"
                  "chmod +x unzip"),
              0);
    EXPECT_FALSE(QFile::exists(installed_.file(u"link"_s)));
    EXPECT_EQ(installed_.started(), "new --post-update-check v2");
    EXPECT_EQ(installed_.content(u"README.md"_s), "of the new");
    EXPECT_EQ(installed_.content(u"plugins/a b/extra.so"_s), "extra");
    EXPECT_EQ(installed_.content(u"data/tally.db"_s), "years of play");
    EXPECT_EQ(installed_.content(marker_name), "v2\n");
    EXPECT_EQ(platform::read_file(installed_.backup(u"README.md"_s)), "of the old");
    EXPECT_EQ(QFile::permissions(installed_.backup({})) & (QFile::ReadGroup | QFile::ReadOther), 0);
    EXPECT_EQ(QDir(installed_.updates_dir()).entryList(QDir::Files),
              QStringList({u"install_update.log"_s, u"install_update.sh.dump"_s,
                           u"rollback-pending.txt"_s}));
    EXPECT_EQ(installed_.content(u"data/updates/install_update.sh.dump"_s), text);
    for (const char *step : {"] START v1 -> v2 pid=", "] proc_gone", "] backup -> ", "] DONE"})
        EXPECT_THAT(log(), HasSubstr(step));
}

TEST_F(ShellScript, AProgramInTheFolderSystemFindsTheNewVersionToo)
{
    const QString old = installed_.file(u"System/ledgerline-tallyhand"_s);
    Installation::put_at(old, "of the old");
    ASSERT_TRUE(QDir().mkpath(installed_.file(log_name))); // a log that cannot be written
    ASSERT_TRUE(install_from_payload_zip(installed_.zip(), old, u"v1"_s, u"v2"_s, false,
                                         installed_.tools(script_))
                    .ok);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(installed_.started(), "new --post-update-check v2");
    EXPECT_EQ(QFileInfo(old).canonicalFilePath(), installed_.program_path());
    EXPECT_EQ(platform::read_file(installed_.backup(u"System/ledgerline-tallyhand"_s)),
              "of the old");
}

TEST_F(ShellScript, WaitsForTheProgramAndKillsOneThatDoesNotEnd)
{
    QProcess program;
    program.start(u"sleep"_s, {u"1000"_s});
    ASSERT_TRUE(program.waitForStarted());
    InstallTools tools = installed_.tools(script_);
    tools.process_id = program.processId();
    ASSERT_TRUE(prepare(tools).ok);
    EXPECT_EQ(run("ln -s /bin/true sleep"), 0);
    EXPECT_THAT(log(), HasSubstr("] proc_gone (waited=60s)"));
    EXPECT_TRUE(program.waitForFinished() && program.exitStatus() == QProcess::CrashExit);
}

struct FailureCase {
    const char *tool;
    const char *when; ///< a pattern of the arguments with which it fails
    int exit_code;
    const char *logged;
};

class FailingStep : public ShellScript, public testing::WithParamInterface<FailureCase> {};
INSTANTIATE_TEST_SUITE_P(
    , FailingStep,
    testing::Values(FailureCase{"unzip", "*", 1, "] EXTRACT FAILED"},
                    // Somebody else has made the folder, in a place that all may write.
                    FailureCase{"mkdir", "-m*", 1, "] BACKUP FAILED"},
                    // The disk is full.
                    FailureCase{"cp", "*tally-new", 1, "] SWAP FAILED — nothing was changed"},
                    // Half of the files have taken their places.
                    FailureCase{"mv", "*/staging*|*/ledgerline-tallyhand.tally-new*", 2,
                                "] SWAP FAILED — restoring backup"}));

TEST_P(FailingStep, LeavesTheOldVersionRunning)
{
    ASSERT_TRUE(prepare(installed_.tools(script_)).ok);
    const QByteArray tool = GetParam().tool;
    EXPECT_EQ(run("printf '#!/bin/sh\\ncase \"$*\" in " + QByteArray(GetParam().when) +
                  ") [ -e \"$0.\" ] || { : >\"$0.\"; exit 1; } ;; esac\\nexec /bin/" + tool +
                  " \"$@\"' >" + tool + "; chmod +x " + tool),
              GetParam().exit_code);
    EXPECT_EQ(installed_.started(), "old ");
    EXPECT_THAT(log(), HasSubstr(GetParam().logged));
    EXPECT_EQ(installed_.content(u"README.md"_s), "of the old");
    EXPECT_EQ(QDir(installed_.root()).entryList(QDir::Files),
              QStringList({u"ledgerline-tallyhand"_s, u"README.md"_s}));
    EXPECT_FALSE(QFile::exists(installed_.file(u"plugins/a b/extra.so"_s)));
    EXPECT_FALSE(QFile::exists(installed_.file(marker_name)));
}

/// Kills the script before or after the n-th tool that it calls, a copy perhaps half written.
const QByteArray killer = R"(for tool in rm mkdir unzip chmod find cp mv tail sed; do
cat >$tool <<'END'
#!/bin/sh
dir=${0%/*}; tool=${0##*/}; echo x >>"$dir/count"; PATH=${PATH#*:}
if [ $(wc -l <"$dir/count") = "$KILL_AT" ]; then
  case $KILL_WHEN$tool in
  after*) "$tool" "$@" ;;
  beforecp) for last; do :; done; printf '#!/bin' >"$last" ;;
  esac
  kill -9 $PPID; exit 1
fi
exec "$tool" "$@"
END
chmod +x $tool; done)";

class KilledScript : public ShellScript, public testing::WithParamInterface<const char *> {};
INSTANTIATE_TEST_SUITE_P(, KilledScript, testing::Values("before", "after"));

TEST_P(KilledScript, LeavesAnInstallationThatStartsAtEveryStep)
{
    int steps = 0;
    bool is_new = false;
    for (int end = -1; end != 0; ++steps) {
        ASSERT_LT(steps, 200);
        const Installation fresh;
        ASSERT_TRUE(install_from_payload_zip(fresh.zip(), fresh.program_path(), u"v1"_s, u"v2"_s,
                                             false, fresh.tools(script_))
                        .ok);
        const QByteArray script = platform::read_file(script_);
        end = run("export KILL_AT=" + QByteArray::number(steps + 1) + " KILL_WHEN=" + GetParam() +
                  "\n" + killer);
        if (fresh.content(log_name).contains("] launch"))
            fresh.started();
        const QByteArray version = fresh.start();
        EXPECT_TRUE(version == "new " || (version == "old " && !is_new)) << steps;
        EXPECT_EQ(fresh.content(u"data/tally.db"_s), "years of play");
        is_new = version == "new ";
        if (is_new)
            continue;
        // Whoever tries again gets there.
        Installation::put_at(script_, script);
        EXPECT_EQ(run("rm -f *"), 0) << steps;
        EXPECT_EQ(fresh.started(), "new --post-update-check v2") << steps;
    }
    EXPECT_TRUE(is_new);
    EXPECT_GT(steps, 20);
}

TEST_F(ShellScript, ReplacesAProgramThatComesAlone)
{
    const QString update = installed_.updates_dir() + u"/tallyhand-new.exe"_s;
    const auto install = [&] {
        return install_and_restart(update, installed_.program_path(), false,
                                   installed_.tools(script_));
    };
    EXPECT_EQ(install().error, u"New exe not found: "_s + update);
    Installation::put_at(update, platform::read_file(installed_.zip()));
    EXPECT_EQ(install().error, u"What has come is no program: "_s + update);
    Installation::put_at(update, installed_.program("new"));
    ASSERT_TRUE(QFile(update).setPermissions(QFile::ReadOwner) && install().ok);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(installed_.started(), "new ");
    EXPECT_FALSE(QFile::exists(update) || QFile::exists(script_));
}

TEST_F(ShellScript, IsNotWrittenForWhatMustNotBeInstalled)
{
    const QString path = installed_.updates_dir() + u"/install_update.sh"_s;
    InstallTools tools = installed_.tools(script_);
    const auto refusal = [&](const QString &version) {
        const DownloadResult result = prepare(tools, version);
        EXPECT_FALSE(result.ok);
        return result.error.toStdString();
    };
    EXPECT_EQ(refusal(u"v1"_s), "v1 is not newer than v1");
    EXPECT_THAT(refusal(u"v2 & x"_s), HasSubstr("is no version"));
    tools.executable_name = u"tallyhand"_s;
    EXPECT_THAT(refusal(u"v2"_s), HasSubstr("The payload is refused: "));
    tools = installed_.tools(script_);
    tools.payload_script = [](const PayloadSwap &swap) {
        return batch_for(swap, [](const QString &) { return QString(); });
    };
    EXPECT_THAT(refusal(u"v2"_s), HasSubstr("cannot carry"));
    EXPECT_EQ(script_, QString());
    EXPECT_FALSE(QFile::exists(path));
    tools = installed_.tools(script_);
    tools.start = [](const QString &) {
        return false;
    };
    EXPECT_EQ(refusal(u"v2"_s), "Cannot spawn install bat");
    ASSERT_TRUE(QFile::remove(path) && QDir().mkpath(path));
    EXPECT_EQ(refusal(u"v2"_s), "Cannot write bat: " + path.toStdString());
}

TEST_F(ShellScript, ObstaclesAreToldBeforeADownload)
{
    InstallTools tools = installed_.tools(script_);
    const auto obstacle = [&](UpdateForm form, const QString &program) {
        return obstacle_to(form, program, false, tools).toStdString();
    };
    EXPECT_EQ(obstacle(UpdateForm::Payload, u"/nowhere/tallyhand"_s),
              "The folder \"/nowhere\" cannot be written.");
    const QByteArray search_path = qgetenv("PATH");
    qputenv("PATH", "/nowhere");
    EXPECT_THAT(obstacle(UpdateForm::Payload, installed_.program_path()), HasSubstr("unzip"));
    EXPECT_EQ(obstacle(UpdateForm::Executable, installed_.program_path()), "");
    qputenv("PATH", search_path);
}

} // namespace
} // namespace tally::platform::Updater
