#pragma once

#include "platform/files/exact_files.h"
#include "platform/updater/install.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace tally::test {

/// An installed program that is a small script: when it is started it notes its version and its
/// arguments. It lies in a folder whose name a shell trips over.
class Installation {
public:
    Installation()
    {
        put(QStringLiteral("ledgerline-tallyhand"), program("old"));
        put(QStringLiteral("README.md"), "of the old");
        put(QStringLiteral("data/tally.db"), "years of play");
        const QString payload = folder_.filePath(QStringLiteral("payload/"));
        put_at(payload + QStringLiteral("ledgerline-tallyhand"), program("new"));
        put_at(payload + QStringLiteral("README.md"), "of the new");
        put_at(payload + QStringLiteral("plugins/a b/extra.so"), "extra");
        QDir(folder_.path()).mkpath(QStringLiteral("tmp"));
        QDir(root()).mkpath(QStringLiteral("data/updates"));
        QProcess process;
        process.setWorkingDirectory(payload);
        process.start(QStringLiteral("zip"), {QStringLiteral("-qr"), zip(), QStringLiteral(".")});
        process.waitForFinished();
    }

    QString root() const
    {
        return folder_.filePath(QStringLiteral("a 'b' & \"$c\" `d` \\ [e]*;\nü"));
    }
    QString file(const QString &name) const { return root() + u'/' + name; }
    QString updates_dir() const { return file(QStringLiteral("data/updates")); }
    QString program_path() const { return file(QStringLiteral("ledgerline-tallyhand")); }
    /// A new version.
    QString zip() const { return updates_dir() + QStringLiteral("/payload.zip"); }
    QString backup(const QString &name) const
    {
        return folder_.filePath(QStringLiteral("tmp/tallyhand-backup-v1/") + name);
    }
    QByteArray content(const QString &name) const { return platform::read_file(file(name)); }

    QByteArray program(const QByteArray &version) const
    {
        return "#!/bin/sh\nprintf '%s' '" + version + " '\"$*\" >'" +
               QFile::encodeName(started_file()) + "'\n";
    }
    void put(const QString &name, const QByteArray &content) const { put_at(file(name), content); }
    static void put_at(const QString &path, const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.setPermissions(file.permissions() | QFile::ExeOwner);
    }

    /// The tools of this system, but for a process that nobody has, and for a script that is left
    /// to the test.
    platform::Updater::InstallTools tools(QString &script) const
    {
        auto tools = platform::Updater::system_tools();
        tools.temp_dir = folder_.filePath(QStringLiteral("tmp"));
        tools.process_id = 1 << 30;
        tools.start = [&script](const QString &path) {
            script = path;
            return true;
        };
        return tools;
    }

    bool has_started() const { return QFile::exists(started_file()); }
    /// What a program notes that is started, at last.
    QByteArray started() const
    {
        QByteArray note;
        const auto is_noted = [&] {
            return !(note = platform::read_file(started_file())).isEmpty();
        };
        EXPECT_TRUE(QTest::qWaitFor(is_noted, 30'000));
        QFile::remove(started_file());
        return note;
    }
    /// Starts the program as a user would.
    QByteArray start() const
    {
        QFile::remove(started_file());
        EXPECT_EQ(QProcess::execute(program_path(), QStringList()), 0);
        return started();
    }

private:
    QString started_file() const { return folder_.filePath(QStringLiteral("started.txt")); }

    QTemporaryDir folder_;
};

} // namespace tally::test
