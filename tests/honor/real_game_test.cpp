#include "honor/real_game.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace tally::honor {
namespace {

using namespace tally::test;

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
    const auto people =
        roll_people(QByteArray{roll.records}.toULongLong(), QByteArray{roll.rank}.toULongLong());
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

INSTANTIATE_TEST_SUITE_P(
    WhereverThePlayerStands, RealGameRolls,
    testing::Values(RollCase{"1000", "1", "192", "64"}, RollCase{"1000", "500", "192", "320"},
                    RollCase{"1000", "1000", "192", "64"}, RollCase{"1000", "1000", "480", "64"},
                    RollCase{"100", "99", "192", "64"}, RollCase{"80", "40", "3000", "64"}));

/// What a reader without root's rights finds: forked, since rights once given up stay so.
int state_for_others(const std::string &display)
{
    const pid_t child = fork();
    if (child != 0) {
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 && setresuid(nobody, nobody, nobody) != 0)
        _exit(100);
    platform::X11Host host{display};
    GameMemoryReader reader{host, QString{}};
    _exit(reader.attach() ? 101 : static_cast<int>(reader.state()));
}

TEST_F(RealGame, WithoutTheRightToReadTheStateSaysSo)
{
    const GameProcess game{*session, {QStringLiteral("--undumpable"), QStringLiteral("1")}};
    ASSERT_TRUE(game.ready());
    EXPECT_EQ(state_for_others(display()), static_cast<int>(ReaderState::NeedsAdmin));
}

} // namespace
} // namespace tally::honor
