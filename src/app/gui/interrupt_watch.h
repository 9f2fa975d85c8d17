#pragma once

#include <QTimer>

#include <chrono>

namespace tally::app {

/// Turns an interrupt from the terminal, the end of the session (SIGTERM) and that of the terminal
/// (SIGHUP) into an orderly end of the program: the signal only sets a flag, which a timer of the
/// event loop looks at.
class InterruptWatch : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds shipped_interval{500};

    explicit InterruptWatch(QObject *parent, std::chrono::milliseconds interval = shipped_interval);

Q_SIGNALS:
    void interrupted(); ///< once

private:
    void check();

    QTimer timer_;
};

} // namespace tally::app
