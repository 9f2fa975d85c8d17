#pragma once

#include "honor/roll_reader.h"

#include <QSemaphore>
#include <QStringList>

#include <atomic>
#include <deque>
#include <functional>

namespace tally::test {

/// One read after the other, as the script says, and at its end nothing.
class ScriptedReader : public honor::RollReader {
public:
    using Read = std::function<std::optional<honor::ReadResult>(std::stop_token)>;

    std::deque<std::pair<honor::ReaderState, Read>> script; ///< of reads to come
    std::atomic<bool> reading = false;
    std::atomic<int> detached = 0;
    std::atomic<bool> disturbed = false; ///< a member was called during a read
    QStringList markers;
    QSemaphore begun; ///< reads

    void gives(honor::ReaderState state, std::optional<honor::ReadResult> result)
    {
        script.emplace_back(state, [result](const std::stop_token &) { return result; });
    }

    void set_markers(const QString &player, const QString &enemy1, const QString &enemy2) override
    {
        disturbed = disturbed || reading;
        markers = {player, enemy1, enemy2};
    }
    std::optional<honor::ReadResult> read_honor_roll(const QString &, std::stop_token stop) override
    {
        struct Reading {
            std::atomic<bool> &flag;
            explicit Reading(std::atomic<bool> &of) : flag(of) { flag = true; }
            ~Reading() { flag = false; }
        };
        const Reading now(reading);
        begun.release();
        if (script.empty())
            return {};
        const auto [state, read] = script.front();
        script.pop_front();
        state_ = state;
        return read(stop);
    }
    honor::ReaderState state() const override { return state_; }
    void detach() override
    {
        disturbed = disturbed || reading;
        ++detached;
    }

private:
    honor::ReaderState state_ = honor::ReaderState::Ok;
};

/// Reads until it is stopped.
inline std::optional<honor::ReadResult> read_until_stopped(const std::stop_token &stop)
{
    QSemaphore stopped;
    const std::stop_callback release(stop, [&stopped] { stopped.release(); });
    stopped.acquire();
    return {};
}

/// A read of a roll in which the player has this honor, begun at `time`.
inline honor::ReadResult read_of(std::optional<std::int64_t> honor, double time)
{
    honor::ReadResult read;
    read.own_honor = honor;
    read.started_at = time;
    read.elapsed = 1.25;
    read.own_rank = 2;
    read.own_kingdom = 1234;
    read.entries = {{0, QStringLiteral("Bo"), 600'000, 1, {}},
                    {0, QStringLiteral("Ada"), honor, 2, {}}};
    return read;
}

} // namespace tally::test
