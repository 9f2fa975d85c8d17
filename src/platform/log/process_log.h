#pragma once

#include "log/rotating_file.h"

#include <QString>

#include <cstdio>
#include <mutex>

namespace tally::platform {

struct ProcessLogOptions {
    RotatingFileOptions file;
    std::FILE *echo = stderr;
};

/// While it lives, Qt's messages go to the standard error stream and, with time and category, to a
/// file. Only one may live at a time. Any thread may log. A file that cannot be written costs
/// nothing but the file.
class ProcessLog {
public:
    explicit ProcessLog(ProcessLogOptions options);
    ~ProcessLog();
    ProcessLog(const ProcessLog &) = delete;
    ProcessLog &operator=(const ProcessLog &) = delete;

    /// Logs a line that has its own prefix in brackets: as it stands to the standard error stream,
    /// with the time to the file. Without a living log it only goes to the standard error stream.
    static void line(const QString &text);

private:
    static void on_message(QtMsgType type, const QMessageLogContext &context, const QString &text);
    void write(const QString &echoed, const QString &filed);

    std::mutex mutex_;
    RotatingFile file_;
    std::FILE *echo_;
    QtMessageHandler former_handler_;
};

/// The name, version, Qt version, platform and store of a run that starts now.
QString start_line(const QString &store_path);

} // namespace tally::platform
