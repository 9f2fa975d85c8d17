#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <csignal>

namespace tally::test {

struct ProgramResult {
    bool crashed = false;
    int exit_code = -1;
    QByteArray error_output;
};

/// Starts a program in a folder without a display; the caller waits for it.
inline void start_program(QProcess &process, const QString &program, const QStringList &arguments,
                          const QString &folder)
{
    process.setWorkingDirectory(folder);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForStarted();
}

/// Runs a program to its end, for at most a minute.
inline ProgramResult run_program(const QString &program, const QStringList &arguments,
                                 const QString &folder)
{
    QProcess process;
    start_program(process, program, arguments, folder);
    const bool ended = process.waitForFinished(60'000);
    if (!ended) {
        process.kill();
        process.waitForFinished();
    }
    return {!ended || process.exitStatus() == QProcess::CrashExit, process.exitCode(),
            process.readAllStandardError()};
}

} // namespace tally::test
