#include "fake_roll.h"
#include "honor/honor_roll.h"
#include "honor/marker_addresses.h"
#include "honor/memory_walk.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace tally::honor {
namespace {

using namespace tally::test;
using platform::FakeMemory;

constexpr std::uint64_t everywhere = 0x7FFFFFFFFFFF;
constexpr std::uint64_t base = 0x10000000;
constexpr std::size_t mib = std::size_t{1} << 20;

std::vector<std::uint64_t> addresses_in(const std::shared_ptr<platform::FakeImage> &image,
                                        const std::stop_token &stop = {})
{
    FakeMemory memory{image};
    return find_marker_addresses(memory, 0, everywhere, usual_markers(), stop);
}

/// From where a read of the roll whose first byte stands at `roll` should start: the record's tag
/// and all that belongs to it just inside the window.
std::uint64_t start_of(std::uint64_t roll)
{
    return roll + roll_tag_offset - 128 + 0x4000;
}

TEST(MarkerScan, FindsWhatAPlainSearchFinds)
{
    const Markers markers{QByteArray{"aab"}, QByteArray{"ab"}, QByteArray(40, 'a')};
    const MarkerScan scan{markers};
    std::mt19937 random{3};
    constexpr char alphabet[] = {'\n', '\2', '\3', '\50', 'a', 'a', 'a', 'b'};
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes(qsizetype(random() % 700), '\0');
        for (char &c : bytes)
            c = alphabet[random() % sizeof alphabet];
        if (bytes.size() > 60)
            bytes.replace(bytes.size() - 45, 42, "\n\50" + markers[2]);
        std::vector<std::pair<std::uint64_t, std::size_t>> expected;
        for (qsizetype at = 0; at < bytes.size(); ++at) {
            for (std::size_t i = 0; i < markers.size(); ++i) {
                const QByteArray shape = "\n" + QByteArray(1, char(markers[i].size())) + markers[i];
                if (bytes.mid(at, shape.size()) == shape)
                    expected.emplace_back(base + std::uint64_t(at) + 2, i);
            }
        }
        std::vector<std::pair<std::uint64_t, std::size_t>> found;
        scan.find(bytes, base,
                  [&](const MarkerHit &hit) { found.emplace_back(hit.name_address, hit.marker); });
        ASSERT_EQ(found, expected) << "round " << round;
    }
}

class MarkerAddressesAtSeams : public testing::TestWithParam<int> {};

// The player's record is moved over the place where two chunks meet, and over a page that cannot be
// read before it.
TEST_P(MarkerAddressesAtSeams, LoseNoRecord)
{
    constexpr std::size_t player_rank = 200;
    constexpr std::size_t tag_in_roll = (player_rank - 1) * roll_stride + roll_tag_offset;
    const std::size_t seam = 2 * MemoryWalk::chunk_size;
    const std::size_t roll_at = seam - tag_in_roll + std::size_t(GetParam() + 64) - 64;
    const std::string roll = roll_image(roll_people(400, player_rank));
    const auto image = image_of({{base, padded(roll, roll_at, mib)}});
    EXPECT_EQ(addresses_in(image), std::vector{start_of(base + roll_at)});

    image->unreadable_pages.insert(base + seam - 0x10000);
    EXPECT_EQ(addresses_in(image), std::vector{start_of(base + roll_at)});
}

INSTANTIATE_TEST_SUITE_P(AroundASeam, MarkerAddressesAtSeams,
                         testing::Values(-16, -15, -3, -2, -1, 0, 1, 31, 32, 33));

TEST(MarkerAddresses, ThousandsOfShapedMessagesCostOnePassAndAFewLooks)
{
    std::string chat;
    while (chat.size() < 32 * mib) {
        for (const char *name : {player_name, first_enemy, second_enemy}) {
            chat += "\n" + std::string(1, char(std::strlen(name))) + name;
            chat.append(3'000, '.');
        }
    }
    chat.resize(32 * mib);
    const std::string roll = roll_image(roll_people(400, 10));
    const std::uint64_t roll_address = base + chat.size() + 0x100000;
    const auto image = image_of({{base, chat}, {roll_address, roll}});
    const auto addresses = addresses_in(image);
    EXPECT_EQ(addresses, std::vector{start_of(roll_address)});
    EXPECT_LE(image->bytes_asked, chat.size() + roll.size() + 280 * mib);
}

struct CopiesCase {
    const char *rule;
    std::size_t gap; ///< between the copies
    bool older_first;
};

TEST(MarkerAddresses, AnOlderCopyNearbyStaysOutOfTheWindowsStart)
{
    const auto people = roll_people(500, 250);
    const std::string now = roll_image(people);
    const std::string older = roll_image(earlier(people, 30'000));
    for (const CopiesCase &c : {CopiesCase{"adjoining", 0, true},
                                {"apart", 0x20000, true},
                                {"adjoining, behind", 0, false},
                                {"apart, behind", 0x20000, false}}) {
        const std::string gap(c.gap, '\0');
        const std::string both = c.older_first ? older + gap + now : now + gap + older;
        const std::size_t now_at = 0x8000 + (c.older_first ? older.size() + gap.size() : 0);
        const auto image = image_of({{base, padded(both, 0x8000, mib)}});
        EXPECT_EQ(addresses_in(image), std::vector{start_of(base + now_at)}) << c.rule;
    }
}

TEST(MarkerAddresses, ManyCopiesDoNotCrowdTheWholeRollOut)
{
    const auto people = roll_people(100, 50);
    const auto image = image_of({});
    for (std::uint64_t i = 0; i < 40; ++i) {
        image->regions[base + i * 2 * mib] = torn(roll_image(people));
        image->regions[base + i * 2 * mib + mib] = roll_image(earlier(people, 10 + i));
    }
    const std::uint64_t whole_at = base + 90 * mib;
    image->regions[whole_at] = roll_image(people);
    EXPECT_EQ(addresses_in(image), std::vector{start_of(whole_at)});
    for (auto &[address, content] : image->regions)
        content = roll_image(people);
    EXPECT_EQ(addresses_in(image).size(), 64U) << "of more that are equal";
}

TEST(MarkerAddresses, ARollOfTooFewGivesNone)
{
    EXPECT_TRUE(addresses_in(image_of({{base, roll_image(roll_people(79, 40))}})).empty());
    EXPECT_EQ(addresses_in(image_of({{base, roll_image(roll_people(80, 40))}})).size(), 1U);
}

TEST(MarkerAddresses, APlayerFarBehindTheFirstStaysInView)
{
    // 900 records of 700 bytes: the first lies 615 KiB before the player.
    const auto image = image_of({{base, roll_image(roll_people(900, 880), 700)}});
    const std::uint64_t name_at = base + 879 * 700 + roll_tag_offset + 2;
    const auto addresses = addresses_in(image);
    ASSERT_EQ(addresses.size(), 1U);
    EXPECT_LE(name_at + std::strlen(player_name), addresses.front() + 0x80000);
    EXPECT_GT(name_at + 0x1000, addresses.front() + 0x80000);
}

TEST(MarkerAddresses, RegionsThatVanishAreLeftBehindAtOnce)
{
    const std::string roll = roll_image(roll_people(200, 100));
    const auto image = image_of({{base, std::string(64 * mib, 'x')}, {base + 128 * mib, roll}});
    image->on_read = [&] {
        if (image->reads == 2)
            image->regions.erase(base);
    };
    EXPECT_EQ(addresses_in(image), std::vector{start_of(base + 128 * mib)});
    EXPECT_LE(image->bytes_asked, 8 * mib);
}

} // namespace
} // namespace tally::honor
