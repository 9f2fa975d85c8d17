#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QStringList>

namespace tally::test {

/// While it lives, what is logged goes to it, not to the standard error stream. One at a time.
class LogCapture {
public:
    LogCapture()
    {
        lines_.clear();
        former_ =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &t) {
                const QMutexLocker lock(&mutex_);
                lines_ << t;
            });
    }
    ~LogCapture() { qInstallMessageHandler(former_); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /// The lines that hold a text.
    static QStringList lines(const QString &with = {})
    {
        const QMutexLocker lock(&mutex_);
        return lines_.filter(with);
    }

private:
    static inline QMutex mutex_;
    static inline QStringList lines_;
    QtMessageHandler former_ = nullptr;
};

} // namespace tally::test
