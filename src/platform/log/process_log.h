#pragma once

#include "platform/log/rotating_file.h"

#include <QString>

#include <cstdio>

namespace tally::platform {

struct ProcessLogOptions {
    QString path;     ///< of the file; older ones have a number before their suffix
    QString run_line; ///< see `start_line`: the first line of this run and of every further file
    qint64 rotate_at = 1 << 20; ///< bytes
    int kept = 3;               ///< files at most
    std::FILE *echo = stderr;
};

/// While it lives, Qt's messages go to the standard error stream and, with time and category, to a
/// file. Only one may live at a time. Any thread may log. A file that cannot be written costs
/// nothing but the file.
class ProcessLog {
public:
    explicit ProcessLog(const ProcessLogOptions &options);
    ~ProcessLog();
    ProcessLog(const ProcessLog &) = delete;
    ProcessLog &operator=(const ProcessLog &) = delete;

    /// Logs a line that has its own prefix in brackets: as it stands to the standard error stream,
    /// with the time to the file. While no log lives it only goes to the standard error stream.
    static void line(const QString &text);

private:
    static void on_message(QtMsgType type, const QMessageLogContext &context, const QString &text);
    static void write(const QString &echoed, const QString &filed);

    RotatingFile file_;
    std::FILE *echo_;
    QtMessageHandler former_handler_;
};

/// Where the graphical program logs: logs/tallyhand.log in the data folder.
QString log_path();

/// Name, version, Qt version, platform and store of this run.
QString start_line(const QString &store_path);

} // namespace tally::platform
