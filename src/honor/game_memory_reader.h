#pragma once

#include "honor/marker_scan.h"
#include "honor/roll_reader.h"
#include "platform/clock/clock.h"
#include "platform/host/host.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <vector>

namespace tally::honor {

/// Reads the honor roll out of the running game, which it never writes to. One read at a time; a
/// caller may end it early through the stop token.
class GameMemoryReader : public RollReader {
public:
    /// \param target_exe image path of the game to read; may be empty
    GameMemoryReader(platform::Host &host, QString target_exe,
                     platform::Clock clock = platform::system_time);

    void set_markers(const QString &player, const QString &enemy1, const QString &enemy2) override;

    /// Opens the game's process, unless it is open already. \return whether it can be read.
    bool attach();
    void detach() override;
    ReaderState state() const override { return state_; }

    /// What the platform delivers of `size` bytes at `address`; nothing without a process.
    QByteArray read_memory(std::uint64_t address, std::uint64_t size);
    /// `size` bytes from `start`, page by page, zero where nothing is delivered.
    QByteArray read_window(std::uint64_t start, std::uint64_t size);

    /// How many records begin in the 512 KiB from 16 KiB before the address.
    int score_candidate(std::uint64_t address);
    /// The largest honor within the bounds that a record of this name has within 512 KiB.
    std::optional<std::int64_t> find_own_honor(std::uint64_t address, const QString &player_name,
                                               std::int64_t low, std::int64_t high);

    /// The whole of one read. Nothing without the game, the markers or a roll, and after a stop;
    /// the first of these shows in `state`.
    std::optional<ReadResult> read_honor_roll(const QString &player_name,
                                              std::stop_token stop = {}) override;

    /// Recently successful addresses, newest first, at most 10.
    const std::vector<std::uint64_t> &address_cache() const { return address_cache_; }

private:
    using Candidates = std::set<std::uint64_t>;

    Candidates candidates_between(std::uint64_t low, std::uint64_t high);
    Candidates find_candidates();
    std::optional<std::uint64_t> best_candidate(const Candidates &candidates,
                                                const QString &player_name);
    void remember(std::uint64_t address);
    std::vector<LeaderboardEntry> read_roll(std::uint64_t address);

    platform::Host &host_;
    QString target_exe_;
    platform::Clock clock_;
    Markers markers_;
    std::optional<std::uint32_t> pid_;
    std::unique_ptr<platform::ProcessMemory> process_;
    std::vector<std::uint64_t> address_cache_;
    ReaderState state_ = ReaderState::Ok;
    std::stop_token stop_; ///< of the present read
};

} // namespace tally::honor
