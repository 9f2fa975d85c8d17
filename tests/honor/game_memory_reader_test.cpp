#include "fake_roll.h"
#include "honor/game_memory_reader.h"

#include <gtest/gtest.h>

namespace tally::honor {
namespace {

using namespace tally::test;
using platform::FakeHost;

constexpr std::uint64_t base = 0x10000000;
constexpr std::uint64_t mib = std::uint64_t{1} << 20;
constexpr std::uint32_t game_pid = 77;
const QString player = QString::fromUtf8(player_name);

/// A host on which the game runs with this memory.
FakeHost host_with(std::shared_ptr<platform::FakeImage> image)
{
    FakeHost host;
    host.windows.push_back({5, u"Rise of Kingdoms", game_pid});
    host.processes[game_pid] = {u"C:\\game\\rok.exe", std::move(image)};
    return host;
}

GameMemoryReader reader_on(platform::Host &host, const QString &target = {},
                           platform::Clock clock = platform::system_time)
{
    GameMemoryReader reader{host, target, std::move(clock)};
    reader.set_markers(player, QString::fromUtf8(first_enemy), QString::fromUtf8(second_enemy));
    return reader;
}

std::string usual_roll()
{
    return roll_image(roll_people(300, 120));
}

TEST(GameMemoryReader, TheStateTellsWhyThereIsNoProcess)
{
    struct Case {
        const char *rule;
        bool window, rights_missing, elevated;
        ReaderState state;
    };
    for (const Case &c :
         {Case{"no window", false, true, false, ReaderState::GameNotFound},
          {"refused", true, true, false, ReaderState::NeedsAdmin},
          {"refused to an administrator", true, true, true, ReaderState::OpenFailed},
          {"gone meanwhile", true, false, false, ReaderState::OpenFailed}}) {
        FakeHost host = host_with(nullptr);
        host.processes[game_pid].rights_missing = c.rights_missing;
        host.is_elevated = c.elevated;
        if (!c.window)
            host.windows.clear();
        GameMemoryReader reader = reader_on(host);
        EXPECT_FALSE(reader.read_honor_roll(player).has_value()) << c.rule;
        EXPECT_EQ(reader.state(), c.state) << c.rule;
    }
}

TEST(GameMemoryReader, TheProcessStaysOpenWhileItsIdStays)
{
    FakeHost host = host_with(image_of({{base, "abc"}}));
    GameMemoryReader reader = reader_on(host);
    EXPECT_TRUE(reader.attach());
    EXPECT_TRUE(reader.attach());
    EXPECT_EQ(host.opened, 1);
    EXPECT_EQ(host.privilege_requests, 1);

    host.windows.front().pid = 78;
    EXPECT_FALSE(reader.attach());
    EXPECT_TRUE(reader.read_memory(base, 3).isEmpty()) << "the old process is closed";

    host.processes[78] = {u"C:\\game\\rok.exe", image_of({{base, "xyz"}})};
    EXPECT_TRUE(reader.attach());
    EXPECT_EQ(reader.read_memory(base, 3), "xyz");
    reader.detach();
    EXPECT_TRUE(reader.read_memory(base, 3).isEmpty());
}

TEST(GameMemoryReader, WithoutAMarkerNothingIsReadButTheStateIsOk)
{
    const auto image = image_of({{base, usual_roll()}});
    FakeHost host = host_with(image);
    GameMemoryReader reader{host, {}};
    reader.set_markers(player, QStringLiteral("Enemy"), QString{});
    EXPECT_FALSE(reader.read_honor_roll(player).has_value());
    EXPECT_EQ(reader.state(), ReaderState::Ok);
    EXPECT_EQ(image->reads, 0U);
}

TEST(GameMemoryReader, UnreadablePagesReadAsZero)
{
    const auto image = image_of({{base, std::string(3 * 4096, 'x')}});
    image->unreadable_pages.insert(base + 4096);
    FakeHost host = host_with(image);
    GameMemoryReader reader = reader_on(host);
    ASSERT_TRUE(reader.attach());
    // From the middle of a page on, and beyond the region's end.
    const QByteArray window = reader.read_window(base + 2048, 3 * 4096);
    EXPECT_EQ(window, QByteArray(2048, 'x') + QByteArray(4096, '\0') + QByteArray(4096, 'x') +
                          QByteArray(2048, '\0'));
}

TEST(GameMemoryReader, AReadTellsTheRollAndThePlayersPlaceInIt)
{
    FakeHost host = host_with(image_of({{base, usual_roll()}}));
    double now = 1'000;
    GameMemoryReader reader = reader_on(host, {}, [&] { return now += 1.5; });
    const auto result = reader.read_honor_roll(player);
    ASSERT_TRUE(result.has_value());
    const auto people = roll_people(300, 120);
    EXPECT_EQ(result->entries.size(), people.size());
    EXPECT_EQ(result->own_honor, std::int64_t(people[119].honor));
    EXPECT_EQ(result->own_rank, 120);
    EXPECT_EQ(result->own_kingdom, people[119].kingdom);
    EXPECT_EQ(result->player_name, player);
    EXPECT_EQ(result->candidates, 1U);
    EXPECT_EQ(result->started_at, 1'001.5);
    EXPECT_EQ(result->finished_at, 1'003.0);
    EXPECT_EQ(result->elapsed, 1.5);
}

TEST(GameMemoryReader, ARollWithoutThePlayerIsASuccessWithoutOwnHonor)
{
    auto people = roll_people(300, 120);
    people[119].name = "Someone else";
    FakeHost host = host_with(image_of({{base, roll_image(people)}}));
    GameMemoryReader reader = reader_on(host);
    const auto result = reader.read_honor_roll(player);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->entries.size(), 300U);
    EXPECT_EQ(result->own_honor, std::nullopt);
    EXPECT_EQ(result->own_rank, std::nullopt);
}

TEST(GameMemoryReader, OfTwoEqualRollsTheLowerIsRead)
{
    const std::string roll = usual_roll();
    FakeHost host = host_with(image_of({{base + 32 * mib, roll}, {base, roll}}));
    GameMemoryReader reader = reader_on(host);
    const auto result = reader.read_honor_roll(player);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->candidates, 2U);
    EXPECT_LT(result->entries.front().address, base + 32 * mib);
}

TEST(GameMemoryReader, TheRollWithTheHighestOwnHonorIsRead)
{
    const auto people = roll_people(300, 120);
    for (const std::uint64_t older_at : {base, base + 64 * mib}) {
        FakeHost host = host_with(image_of({{older_at, roll_image(earlier(people, 1'000))},
                                            {base + 32 * mib, roll_image(people)}}));
        GameMemoryReader reader = reader_on(host);
        const auto result = reader.read_honor_roll(player);
        ASSERT_TRUE(result.has_value());
        EXPECT_EQ(result->own_honor, std::int64_t(people[119].honor));
    }
}

TEST(GameMemoryReader, AKnownAddressNarrowsTheSearchUntilTheRollHasMoved)
{
    constexpr std::uint64_t far = std::uint64_t{1} << 40;
    const auto image = image_of({{base, usual_roll()}, {far, std::string(8 * mib, 'x')}});
    FakeHost host = host_with(image);
    GameMemoryReader reader = reader_on(host);
    ASSERT_TRUE(reader.read_honor_roll(player).has_value());
    const std::uint64_t whole_search = std::exchange(image->bytes_asked, 0);
    ASSERT_TRUE(reader.read_honor_roll(player).has_value());
    EXPECT_EQ(image->bytes_asked, whole_search - 8 * mib);
    EXPECT_EQ(reader.address_cache().size(), 1U);

    image->regions = {{far, usual_roll()}};
    const auto moved = reader.read_honor_roll(player);
    ASSERT_TRUE(moved.has_value());
    EXPECT_GE(moved->entries.front().address, far);
    EXPECT_EQ(reader.address_cache().size(), 2U);
    EXPECT_GE(reader.address_cache().front(), far);
}

TEST(GameMemoryReader, TenAddressesAreRememberedAndTheOldestForgotten)
{
    const auto image = image_of({});
    FakeHost host = host_with(image);
    GameMemoryReader reader = reader_on(host);
    std::vector<std::uint64_t> chosen;
    for (std::uint64_t i = 0; i < 12; ++i) {
        image->regions = {{base + i * mib, usual_roll()}};
        ASSERT_TRUE(reader.read_honor_roll(player).has_value());
        chosen.insert(chosen.begin(), reader.address_cache().front());
    }
    chosen.resize(10);
    EXPECT_EQ(reader.address_cache(), chosen);

    image->regions = {{base + 5 * mib, usual_roll()}};
    ASSERT_TRUE(reader.read_honor_roll(player).has_value());
    std::rotate(chosen.begin(), chosen.begin() + 6, chosen.begin() + 7);
    EXPECT_EQ(reader.address_cache(), chosen) << "a known address moves to the front";
}

TEST(GameMemoryReader, AnAddressNearZeroIsReadFromZero)
{
    FakeHost host = host_with(image_of({{0x1000, usual_roll()}}));
    GameMemoryReader reader = reader_on(host);
    const auto result = reader.read_honor_roll(player);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->entries.size(), 300U);
    EXPECT_EQ(reader.score_candidate(0x100), 300);
}

class GameMemoryReaderCut : public testing::TestWithParam<std::size_t> {};

TEST_P(GameMemoryReaderCut, AReadThatIsStoppedOrLosesTheGameGivesNothing)
{
    const auto image = image_of({{base, usual_roll()}});
    FakeHost host = host_with(image);
    std::stop_source stop;
    image->on_read = [&] {
        if (image->reads == GetParam())
            stop.request_stop();
    };
    GameMemoryReader stopped = reader_on(host);
    EXPECT_FALSE(stopped.read_honor_roll(player, stop.get_token()).has_value());
    EXPECT_EQ(image->reads, GetParam());
    EXPECT_TRUE(stopped.address_cache().empty());

    image->reads = 0;
    image->on_read = [&] {
        image->gone = image->reads >= GetParam();
    };
    GameMemoryReader bereft = reader_on(host);
    EXPECT_FALSE(bereft.read_honor_roll(player).has_value());
}

// Through the walk, the closer looks, the scoring and the reading of the roll itself.
INSTANTIATE_TEST_SUITE_P(AnywhereInARead, GameMemoryReaderCut,
                         testing::Values(1, 2, 10, 200, 300, 420, 600, 700, 820, 900, 1'000));

} // namespace
} // namespace tally::honor
