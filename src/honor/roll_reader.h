#pragma once

#include "honor/read_result.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <stop_token>

namespace tally::honor {

/// The outcome of the last attempt to attach to the game.
enum class ReaderState : std::int32_t {
    Ok = 0,
    GameNotFound = 1, ///< no game window, hence no process
    NeedsAdmin = 2,   ///< reading was refused, and the program doesn't run as administrator
    OpenFailed = 3,   ///< the process could not be opened for another reason
};

/// Where the honor roll comes from. While a read runs, no other member may be called.
class RollReader {
public:
    virtual ~RollReader() = default;

    /// The names that lead to the roll: the player's and those of two enemies.
    virtual void set_markers(const QString &player, const QString &enemy1,
                             const QString &enemy2) = 0;
    /// The whole of one read; nothing without a roll, and soon after a stop was requested.
    virtual std::optional<ReadResult> read_honor_roll(const QString &player_name,
                                                      std::stop_token stop) = 0;
    /// Of the last read.
    virtual ReaderState state() const = 0;
    /// Lets the game's process go until the next read.
    virtual void detach() = 0;
};

} // namespace tally::honor
