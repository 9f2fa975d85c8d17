#pragma once

#include "platform/files/exact_files.h"
#include "platform/updater/install.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>

namespace tally::test {

/// An installed program that is a small script: when it is started it notes its version and its
/// arguments in started.txt. It lies in a folder whose name a shell trips over.
class Installation {
public:
    Installation()
    {
        put(QStringLiteral("ledgerline-tallyhand"), program("old"));
        put(QStringLiteral("README.md"), "of the old");
        put(QStringLiteral("mine.txt"), "the user's");
        put(QStringLiteral("data/tally.db"), "years of play");
        put(QStringLiteral("data/updates/older.log"), "kept");
        QDir(folder_.path()).mkpath(QStringLiteral("tmp"));
    }

    QString root() const { return folder_.filePath(QStringLiteral("a 'b' & $c;ü")); }
    QString file(const QString &name) const { return root() + u'/' + name; }
    QString temp_dir() const { return folder_.filePath(QStringLiteral("tmp")); }
    QString started_file() const { return folder_.filePath(QStringLiteral("started.txt")); }
    QString program_path() const { return file(QStringLiteral("ledgerline-tallyhand")); }
    QByteArray content(const QString &name) const { return platform::read_file(file(name)); }

    QByteArray program(const QByteArray &version) const
    {
        return "#!/bin/sh\nprintf '%s' '" + version + " '\"$*\" >'" +
               QFile::encodeName(started_file()) + "'\n";
    }

    void put(const QString &name, const QByteArray &content) const { put_at(file(name), content); }

    /// A zip with a new program and more. \return its path, in the folder of updates.
    QString make_payload() const
    {
        const QString source = folder_.filePath(QStringLiteral("payload/"));
        put_at(source + QStringLiteral("ledgerline-tallyhand"), program("new"));
        put_at(source + QStringLiteral("README.md"), "of the new");
        put_at(source + QStringLiteral("plugins/a b/extra.so"), "extra");
        const QString zip = file(QStringLiteral("data/updates/payload.zip"));
        QProcess process;
        process.setWorkingDirectory(source);
        process.start(QStringLiteral("zip"), {QStringLiteral("-qr"), zip, QStringLiteral(".")});
        EXPECT_TRUE(process.waitForFinished());
        return zip;
    }

    /// The tools of this system, but for a process that has ended, and for a script that is left to
    /// the test.
    platform::Updater::InstallTools tools(QString &script) const
    {
        auto tools = platform::Updater::system_tools();
        tools.temp_dir = temp_dir();
        tools.process_id = ended_process();
        tools.start = [&script](const QString &path) {
            script = path;
            return true;
        };
        return tools;
    }

    /// What the program notes when it is started, at last.
    QByteArray started() const
    {
        const auto has_started = [this] {
            return !platform::read_file(started_file()).isEmpty();
        };
        EXPECT_TRUE(QTest::qWaitFor(has_started, 30'000));
        return platform::read_file(started_file());
    }

    /// Starts the program as a user would. \return what it notes.
    QByteArray start() const
    {
        QFile::remove(started_file());
        QProcess process;
        process.start(program_path(), QStringList());
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0);
        return started();
    }

    /// Whether all that the user has is as it was.
    bool data_is_untouched() const
    {
        return content(QStringLiteral("data/tally.db")) == "years of play" &&
               content(QStringLiteral("data/updates/older.log")) == "kept" &&
               content(QStringLiteral("mine.txt")) == "the user's";
    }

    QStringList temporary_files() const
    {
        return QDir(root()).entryList({QStringLiteral("*.tally-new")}, QDir::AllEntries);
    }

    static void put_at(const QString &path, const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.setPermissions(file.permissions() | QFile::ExeOwner);
    }

private:
    static qint64 ended_process()
    {
        QProcess process;
        process.start(QStringLiteral("true"), QStringList());
        process.waitForStarted();
        const qint64 id = process.processId();
        process.waitForFinished();
        return id;
    }

    QTemporaryDir folder_;
};

} // namespace tally::test
