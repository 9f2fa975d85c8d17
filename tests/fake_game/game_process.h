#pragma once

#include "support/x_session.h"

#include <QProcess>
#include <QStringList>

#include <cstdint>

namespace tally::test {

/// A running fake game. Ends with this object.
class GameProcess {
public:
    /// Starts it and waits until it stands ready.
    GameProcess(const XSession &session, const QStringList &options);
    GameProcess(const QProcessEnvironment &environment, const QStringList &options);
    ~GameProcess();
    GameProcess(const GameProcess &) = delete;
    GameProcess &operator=(const GameProcess &) = delete;

    bool ready() const { return ready_; }
    std::uint32_t pid() const { return static_cast<std::uint32_t>(process_.processId()); }

    /// Has it obey one line. \return whether it answered.
    bool tell(const QByteArray &command);
    /// Ends it as a crash would, without a chance to clean up.
    void kill();

private:
    QByteArray answer();

    QProcess process_;
    bool ready_ = false;
};

} // namespace tally::test
