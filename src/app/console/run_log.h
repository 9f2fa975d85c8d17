#pragma once

#include <QString>

namespace tally::app {

/// The output of a console mode: each line goes to the standard error stream at once, and all of
/// them to a log file in the end, however the mode ends.
class RunLog {
public:
    /// The file is replaced; one that cannot be written is named on the standard error stream and
    /// otherwise ignored.
    explicit RunLog(QString path) : path_(std::move(path)) {}
    ~RunLog();
    RunLog(const RunLog &) = delete;
    RunLog &operator=(const RunLog &) = delete;

    void line(const QString &text);
    const QString &text() const { return text_; }

private:
    QString path_;
    QString text_;
};

} // namespace tally::app
