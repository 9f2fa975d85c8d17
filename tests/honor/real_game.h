#pragma once

#include "fake_game/game_process.h"
#include "fake_game/roll_image.h"
#include "honor/game_memory_reader.h"
#include "platform/host/game_windows.h"
#include "platform/host/x11/x11_host.h"

#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

namespace tally::test {

/// A screen for games to show their windows on.
class RealGame : public testing::Test {
protected:
    static void SetUpTestSuite() { session = new XSession{XSession::Manager::None}; }
    static void TearDownTestSuite()
    {
        delete session;
        session = nullptr;
    }

    void SetUp() override
    {
        if (!session->running())
            GTEST_SKIP() << "Xvfb cannot be started";
        platform::X11Host host{display()};
        ASSERT_TRUE(game_has_left(host)) << "that of the test before";
    }

    static honor::GameMemoryReader reader_on(platform::Host &host)
    {
        honor::GameMemoryReader reader{host, QString{}};
        reader.set_markers(QString::fromUtf8(player_name), QString::fromUtf8(first_enemy),
                           QString::fromUtf8(second_enemy));
        return reader;
    }

    /// Waits until the window system has noticed that the game is gone.
    static bool game_has_left(platform::Host &host)
    {
        const auto is_gone = [&host] {
            return platform::find_game_windows(host).isEmpty();
        };
        return QTest::qWaitFor(is_gone, 60'000);
    }

    static std::string display() { return session->display().toStdString(); }

    static inline XSession *session = nullptr;
};

/// Reads a process and calls `on_read` before each read.
class WatchedMemory : public platform::ProcessMemory {
public:
    WatchedMemory(std::unique_ptr<ProcessMemory> inner, const std::function<void()> &on_read)
        : inner_(std::move(inner)), on_read_(on_read)
    {}

    std::size_t read(std::uint64_t address, void *to, std::size_t size) override
    {
        on_read_();
        return inner_->read(address, to, size);
    }
    std::vector<platform::MemoryRegion> readable_regions(std::uint64_t low,
                                                         std::uint64_t high) override
    {
        return inner_->readable_regions(low, high);
    }

private:
    std::unique_ptr<ProcessMemory> inner_;
    const std::function<void()> &on_read_;
};

class WatchedHost : public platform::X11Host {
public:
    using X11Host::X11Host;
    std::function<void()> on_read;

    platform::OpenedProcess open_process(std::uint32_t process_id) override
    {
        platform::OpenedProcess opened = X11Host::open_process(process_id);
        if (opened.memory)
            opened.memory = std::make_unique<WatchedMemory>(std::move(opened.memory), on_read);
        return opened;
    }
};

} // namespace tally::test
