#pragma once

#include "support/plain_connection.h"
#include "support/x_session.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <filesystem>
#include <optional>

namespace tally::test {

/// The program as a user unpacked it: a folder with the executable and all that it writes, and a
/// session of its own for its lock.
class GuiProgram {
public:
    explicit GuiProgram(const QString &executable)
    {
        const auto copy = std::filesystem::path(program().toStdString());
        std::error_code failure;
        std::filesystem::create_hard_link(executable.toStdString(), copy, failure);
        if (failure)
            std::filesystem::copy_file(executable.toStdString(), copy);
        QDir(folder_.path()).mkdir(QStringLiteral("session"));
        QDir(folder_.path()).mkdir(QStringLiteral("mails"));
        QFile::setPermissions(session_dir(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString file(const QString &name) const { return folder_.filePath(name); }
    QString store() const { return file(QStringLiteral("data/tally.db")); }
    QString mails() const { return file(QStringLiteral("mails")); }

    /// A store that earlier runs left, with the given rows of its settings.
    void make_store(const std::vector<std::pair<QString, QString>> &settings) const
    {
        QDir(folder_.path()).mkpath(QStringLiteral("data"));
        const PlainConnection db(store());
        db.rows(QStringLiteral("CREATE TABLE settings (key TEXT PRIMARY KEY, value TEXT)"));
        for (const auto &[key, value] : settings)
            db.rows(QStringLiteral("INSERT INTO settings VALUES ('%1', '%2')").arg(key, value));
    }

    QString setting(const QString &key) const
    {
        return PlainConnection(store()).text(
            QStringLiteral("SELECT value FROM settings WHERE key = '%1'").arg(key));
    }

    /// What libraries of the system never free is no fault of the program.
    static QString leak_options()
    {
        return QStringLiteral("print_suppressions=0:suppressions=" TALLY_LEAKS_OF_OTHERS);
    }

    /// What a program that is started here needs beside a screen.
    QProcessEnvironment with_session(QProcessEnvironment environment) const
    {
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), session_dir());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.insert(QStringLiteral("LSAN_OPTIONS"), leak_options());
        return environment;
    }

    void start(QProcess &process, const QProcessEnvironment &environment) const
    {
        process.setProcessEnvironment(with_session(environment));
        process.setProcessChannelMode(QProcess::SeparateChannels);
        process.setWorkingDirectory(folder_.path());
        process.start(program(), QStringList());
        process.waitForStarted();
    }

    QString program() const { return file(QStringLiteral("ledgerline-tallyhand")); }

private:
    QString session_dir() const { return file(QStringLiteral("session")); }

    QTemporaryDir folder_;
};

} // namespace tally::test
