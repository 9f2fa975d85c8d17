#include "platform/updater/install.h"
#include "support/gui_program.h"
#include "support/print_qt.h"

#include <QTest>

#include <gmock/gmock.h>

#include <csignal>
#include <functional>
#include <iostream>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

constexpr int patience = 60'000; // ms, on a busy machine under sanitizers

/// The real program on a screen of its own, driven by keys.
class Program : public testing::Test {
protected:
    void SetUp() override
    {
        if (!session_.running())
            GTEST_SKIP() << "Xvfb, openbox and xdotool are needed";
        program_.make_store({{u"mailcache_dir"_s, program_.mails()}});
    }

    void TearDown() override
    {
        if (first_.state() != QProcess::NotRunning) {
            first_.kill();
            first_.waitForFinished();
        }
        if (HasFailure())
            std::cerr << first_.readAllStandardError().toStdString();
    }

    QByteArray xdotool(const QStringList &arguments) const
    {
        QProcess process;
        process.setProcessEnvironment(session_.environment());
        process.start(u"xdotool"_s, arguments);
        return process.waitForFinished(patience) ? process.readAllStandardOutput().trimmed()
                                                 : QByteArray();
    }

    void key(const QString &keys) const { xdotool({u"key"_s, u"--delay"_s, u"50"_s, keys}); }
    /// A window manager that is still moving the focus loses keys.
    void press(const QStringList &keys, const std::function<bool()> &have_worked) const
    {
        for (int attempt = 0; attempt < 5; ++attempt) {
            for (const QString &each : keys)
                key(each);
            if (QTest::qWaitFor(have_worked, patience / 5))
                return;
        }
    }
    QByteArray active_window() const { return xdotool({u"getactivewindow"_s}); }
    QByteArray main_window() const
    {
        return xdotool({u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s,
                        u"^Ledgerline - Tallyhand v"_s});
    }

    bool splash_shows() const
    {
        return !xdotool({u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Loading"_s}).isEmpty();
    }

    /// Starts the program and waits until the splash has left the keyboard to the main window.
    void start()
    {
        program_.start(first_, session_.environment());
        window_ = main_window();
        ASSERT_FALSE(window_.isEmpty());
        // The last of what the refresh asks for, and no server answers.
        ASSERT_TRUE(QTest::qWaitFor([this] { return log().contains("icons_index"); }, patience));
        ASSERT_TRUE(QTest::qWaitFor([this] { return !splash_shows(); }, patience));
        xdotool({u"windowactivate"_s, u"--sync"_s, QString::fromLatin1(window_)});
    }

    QByteArray log() const
    {
        QFile file(program_.file(u"data/logs/tallyhand.log"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool has_ended() const { return first_.state() == QProcess::NotRunning; }

    int end_of(QProcess &process) const
    {
        const bool has_ended =
            process.state() == QProcess::NotRunning || process.waitForFinished(patience);
        return has_ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    XSession session_;
    GuiProgram program_{QStringLiteral(TALLY_EXECUTABLE)};
    QProcess first_;
    QByteArray window_;
};

} // namespace

TEST_F(Program, MenusWorkByKeyboardAndAnExitKeepsTheWindowsState)
{
    start();
    press({u"Escape"_s, u"Escape"_s, u"alt+v"_s, u"Up"_s, u"Right"_s, u"Down"_s, u"Return"_s},
          [this] { return program_.setting(u"theme"_s) == u"light"; });
    press({u"ctrl+q"_s}, [this] { return has_ended(); });
    EXPECT_EQ(end_of(first_), 0);
    EXPECT_EQ(program_.setting(u"theme"_s), u"light");
    EXPECT_NE(program_.setting(u"window_geometry_qt"_s), u"");
    EXPECT_EQ(program_.setting(u"window_maximized"_s), u"0");
}

TEST_F(Program, WithoutATrayTheCloseButtonEndsIt)
{
    start();
    press({u"alt+F4"_s}, [this] { return has_ended(); });
    EXPECT_EQ(end_of(first_), 0);
}

TEST_F(Program, ASecondStartBringsTheFirstToTheFrontAndEndsWell)
{
    start();
    const QString window = QString::fromLatin1(window_);
    xdotool({u"windowminimize"_s, u"--sync"_s, window});
    QProcess second;
    program_.start(second, session_.environment());
    EXPECT_EQ(main_window(), window_); // visible again
    EXPECT_EQ(end_of(second), 0);
    EXPECT_THAT(second.readAllStandardError().toStdString(),
                HasSubstr("[main] another live instance holds the singleton mutex — exiting\n"));
    EXPECT_EQ(active_window(), window_);
    EXPECT_EQ(first_.state(), QProcess::Running);
}

TEST_F(Program, AnInterruptEndsItInOrderEvenBehindTheSplash)
{
    program_.start(first_, session_.environment());
    ASSERT_FALSE(main_window().isEmpty());
    ASSERT_TRUE(QTest::qWaitFor([this] { return splash_shows(); }, patience));
    ASSERT_EQ(::kill(static_cast<pid_t>(first_.processId()), SIGINT), 0);
    EXPECT_EQ(end_of(first_), 0);
    EXPECT_THAT(first_.readAllStandardError().toStdString(),
                HasSubstr("[main] SIGINT received — quitting\n"));
    EXPECT_NE(program_.setting(u"window_geometry_qt"_s), u"");
}

TEST_F(Program, AStoreThatIsRemovedIsToldAndMadeAnewWithItsSettingsAtTheEnd)
{
    start();
    const QString box = u"^Store lost$"_s;
    const auto box_shows = [&] {
        return !xdotool({u"search"_s, u"--onlyvisible"_s, u"--name"_s, box}).isEmpty();
    };
    ASSERT_TRUE(QFile::remove(program_.store()));
    ASSERT_TRUE(QTest::qWaitFor(box_shows, patience));
    EXPECT_FALSE(QFile::exists(program_.store()));
    ASSERT_EQ(::kill(static_cast<pid_t>(first_.processId()), SIGTERM), 0);
    EXPECT_EQ(end_of(first_), 0);
    EXPECT_EQ(program_.setting(u"mailcache_dir"_s), program_.mails());
    EXPECT_NE(program_.setting(u"window_geometry_qt"_s), u"");
}

TEST_F(Program, AStoreThatCannotBeOpenedEndsItWithItsReason)
{
    QFile store(program_.store());
    ASSERT_TRUE(store.open(QIODevice::WriteOnly));
    store.write(QByteArray("no database").repeated(1000));
    store.close();
    program_.start(first_, session_.environment());
    EXPECT_EQ(end_of(first_), 1);
    EXPECT_THAT(first_.readAllStandardError().toStdString(),
                HasSubstr("init_schema failed: TallyDb fatal: "));
}

TEST_F(Program, AStuckWorkerDoesNotHoldItUpBeyondTheDeadline)
{
    first_.setProcessEnvironment(session_.environment());
    first_.start(QStringLiteral(TALLY_STUCK_WINDOW), QStringList());
    EXPECT_EQ(end_of(first_), 0);
    EXPECT_THAT(first_.readAllStandardError().toStdString(),
                testing::EndsWith("leaving\n[MainWindow] hard-exit deadline hit — _Exit(0)\n"));
}

TEST_F(Program, ANameThatIsStillLookedUpDoesNotHoldItUpEither)
{
    QProcessEnvironment environment = session_.environment();
    environment.insert(u"LD_PRELOAD"_s, QStringLiteral(TALLY_SLOW_NAMES));
    environment.insert(u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0"_s);
    program_.start(first_, environment);
    QByteArray output;
    const auto says = [&](const char *text) {
        output += first_.readAllStandardError();
        return output.contains(text);
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return says("looking up "); }, patience));
    ASSERT_EQ(::kill(static_cast<pid_t>(first_.processId()), SIGINT), 0);
    EXPECT_EQ(end_of(first_), 0);
    EXPECT_TRUE(says("[MainWindow] hard-exit deadline hit — _Exit(0)\n"));
}

TEST_F(Program, IsReplacedByAnUpdateAndStartsAgainWithItsData)
{
    using namespace platform::Updater;
    start();
    QProcess zip;
    zip.setWorkingDirectory(program_.file({}));
    zip.start(u"zip"_s, {u"-q0"_s, u"payload.zip"_s, u"ledgerline-tallyhand"_s});
    ASSERT_TRUE(zip.waitForFinished(patience));
    InstallTools tools = system_tools();
    tools.temp_dir = program_.file(u"temp"_s);
    tools.process_id = first_.processId();
    tools.start = [this](const QString &script) {
        QProcess shell;
        shell.setProcessEnvironment(program_.with_session(session_.environment()));
        shell.setProgram(u"/bin/sh"_s);
        shell.setArguments({script});
        return shell.startDetached();
    };
    const DownloadResult result = install_from_payload_zip(
        program_.file(u"payload.zip"_s), program_.program(), u"v1"_s, u"v2"_s, false, tools);
    ASSERT_TRUE(result.ok) << result.error.toStdString();
    ASSERT_EQ(::kill(static_cast<pid_t>(first_.processId()), SIGINT), 0);
    EXPECT_EQ(end_of(first_), 0);
    // The lock of the old one is not in the way of the new one, which notes its first start.
    const pid_t next = xdotool({u"getwindowpid"_s, QString::fromLatin1(main_window())}).toInt();
    ASSERT_GT(next, 1);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return QFile::exists(program_.file(u"data/updates/rollback-seen.txt"_s)); },
        patience));
    EXPECT_TRUE(QFile::exists(program_.file(u"temp/tallyhand-backup-v1/ledgerline-tallyhand"_s)));
    EXPECT_EQ(program_.setting(u"mailcache_dir"_s), program_.mails());
    ASSERT_EQ(::kill(next, SIGINT), 0);
    const auto has_gone = [this] {
        const QStringList any = {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Ledgerline"_s};
        return log().count("SIGINT received") == 2 && xdotool(any).isEmpty();
    };
    EXPECT_TRUE(QTest::qWaitFor(has_gone, patience));
}
