#pragma once

#include <sys/types.h>

#include <cstddef>

namespace tally::bench {

/// A process that holds a roll of 1,000 and so much memory full of what resembles it. Ends with
/// this object.
class GameChild {
public:
    explicit GameChild(std::size_t mib);
    ~GameChild();
    GameChild(const GameChild &) = delete;
    GameChild &operator=(const GameChild &) = delete;

    pid_t pid() const { return pid_; }

private:
    pid_t pid_ = -1;
};

} // namespace tally::bench
