#include "fake_game/game_process.h"
#include "fake_game/roll_image.h"
#include "game_memory_reader.h"
#include "host/x11/x11_host.h"

#include <QSet>
#include <QTest>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <future>
#include <thread>

namespace tally::honor {
namespace {

using namespace tally::test;

constexpr int bound_ms = 20'000;

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
    }

    static GameMemoryReader reader_on(platform::Host &host)
    {
        GameMemoryReader reader{host, QString{}};
        reader.set_markers(QString::fromUtf8(player_name), QString::fromUtf8(first_enemy),
                           QString::fromUtf8(second_enemy));
        return reader;
    }

    static std::string display() { return session->display().toStdString(); }

    static XSession *session;
};

XSession *RealGame::session = nullptr;

struct RollCase {
    const char *records;
    const char *rank;
    const char *stride;
    const char *noise_mib;
};

QStringList options_of(const RollCase &roll)
{
    QStringList options{QStringLiteral("--churn"), QStringLiteral("1")};
    for (const auto &[name, value] : {std::pair{"--records", roll.records},
                                      {"--rank", roll.rank},
                                      {"--stride", roll.stride},
                                      {"--noise-mib", roll.noise_mib}})
        options << QString::fromLatin1(name) << QString::fromLatin1(value);
    return options;
}

class RealGameRolls : public RealGame, public testing::WithParamInterface<RollCase> {};

TEST_P(RealGameRolls, AreReadWholeFromTheFirstRecordOn)
{
    const RollCase &roll = GetParam();
    const GameProcess game{*session, options_of(roll)};
    ASSERT_TRUE(game.ready());
    platform::X11Host host{display()};
    GameMemoryReader reader = reader_on(host);

    const auto result = reader.read_honor_roll(QString::fromUtf8(player_name));

    ASSERT_TRUE(result.has_value());
    const auto people = roll_people(QByteArray{roll.records}.toULongLong(),
                                    QByteArray{roll.rank}.toULongLong());
    ASSERT_EQ(result->entries.size(), people.size());
    for (std::size_t i = 0; i < people.size(); ++i) {
        const LeaderboardEntry &entry = result->entries[i];
        ASSERT_EQ(entry.name.toStdString(), people[i].name) << "rank " << i + 1;
        ASSERT_EQ(entry.honor, std::int64_t(people[i].honor)) << "rank " << i + 1;
        ASSERT_EQ(entry.rank, int(i + 1));
        ASSERT_EQ(entry.kingdom, people[i].kingdom) << "rank " << i + 1;
    }
    EXPECT_EQ(result->own_rank, QByteArray{roll.rank}.toInt());
    EXPECT_LE(result->candidates, 64U);
    EXPECT_EQ(reader.state(), ReaderState::Ok);
}

INSTANTIATE_TEST_SUITE_P(WhereverThePlayerStands, RealGameRolls,
                         testing::Values(RollCase{"1000", "1", "192", "64"},
                                         RollCase{"1000", "500", "192", "320"},
                                         RollCase{"1000", "1000", "192", "64"},
                                         RollCase{"1000", "1000", "480", "64"},
                                         RollCase{"100", "99", "192", "64"},
                                         RollCase{"80", "40", "3000", "64"}));

} // namespace
} // namespace tally::honor
