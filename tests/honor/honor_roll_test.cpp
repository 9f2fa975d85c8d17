#include "fake_game/roll_image.h"
#include "honor/honor_roll.h"

#include <gtest/gtest.h>

namespace tally::honor {
namespace {

using tally::test::roll_record;
using tally::test::roll_tag_offset;

/// A lone record: its tag at `tag_at`, the honor before it if there is room, `size` bytes in all.
QByteArray lone_record(qsizetype tag_at, const QByteArray &name, quint64 honor,
                       qsizetype size = 256)
{
    QByteArray buffer(size, '\0');
    const QByteArray record = QByteArray::fromStdString(roll_record(
        {name.toStdString(), honor, 0}, roll_tag_offset + 2 + std::size_t(name.size())));
    const qsizetype skipped = std::max<qsizetype>(qsizetype(roll_tag_offset) - tag_at, 0);
    const QByteArray shown = record.mid(skipped);
    buffer.replace(tag_at - (qsizetype(roll_tag_offset) - skipped), shown.size(), shown);
    return buffer.left(size);
}

struct NameCase {
    const char *rule;
    QByteArray name;
    bool accepted;
};

TEST(HonorRoll, NamesAreTakenByLengthAndContent)
{
    const NameCase cases[] = {
        {"two bytes", "ab", false},
        {"three bytes", "abc", true},
        {"thirty bytes", QByteArray(30, 'n'), true},
        {"thirty-one bytes", QByteArray(31, 'n'), false},
        {"four bytes of two units", "\xC3\xA4\xC3\xB6", false},
        {"a tab", "a\tb", true},
        {"another control character",
         "a\x1f"
         "b",
         false},
        {"an emoji, which takes surrogates", "abc\xF0\x9F\x98\x80", false},
        {"private use", "abc\xEE\x80\x80", false},
        {"behind private use", "abc\xEF\xA4\x80", true},
        {"broken UTF-8", "abc\xFF", false},
        {"Chinese", "\xE5\x8C\x97\xE9\xA2\xA8\xE7\x8B\xBC", true},
    };
    for (const NameCase &c : cases) {
        const QByteArray buffer = lone_record(64, c.name, 5'000);
        EXPECT_EQ(count_records(buffer), c.accepted ? 1 : 0) << c.rule;
        EXPECT_EQ(parse_entries(buffer, 0).size(), c.accepted ? 1U : 0U) << c.rule;
    }
}

TEST(HonorRoll, ABufferIsExaminedUpToThirtyTwoBytesBeforeItsEnd)
{
    const QByteArray at_0 = lone_record(0, "abc", 0, 33);
    EXPECT_EQ(count_records(at_0), 1);
    EXPECT_EQ(parse_entries(at_0, 0x1000).front().address, 0x1002U);
    EXPECT_EQ(count_records(at_0.left(32)), 0);
    EXPECT_TRUE(parse_entries(at_0.left(32), 0).empty());
    EXPECT_EQ(count_records(lone_record(1, "abc", 0, 33)), 0);
}

TEST(HonorRoll, HonorNeedsThirtyTwoBytesBeforeTheTag)
{
    EXPECT_EQ(parse_entries(lone_record(31, "abc", 5'000), 0).front().honor, std::nullopt);
    EXPECT_EQ(parse_entries(lone_record(32, "abc", 5'000), 0).front().honor, 5'000);
}

TEST(HonorRoll, ImplausibleHonorLeavesTheEntryWithoutHonor)
{
    const std::pair<quint64, std::optional<std::int64_t>> cases[] = {{999, std::nullopt},
                                                                     {1'000, 1'000},
                                                                     {2'000'000, 2'000'000},
                                                                     {2'000'001, std::nullopt},
                                                                     {~quint64{0}, std::nullopt}};
    for (const auto &[stored, told] : cases) {
        const auto entries = parse_entries(lone_record(64, "abc", stored), 0);
        ASSERT_EQ(entries.size(), 1U) << stored;
        EXPECT_EQ(entries.front().honor, told) << stored;
    }
}

TEST(HonorRoll, TheSmallestPlausibleNumberIsTheKingdom)
{
    QByteArray buffer = lone_record(200, "abc", 500'000);
    const auto place = [&](qsizetype at, qint32 value) {
        memcpy(buffer.data() + at, &value, sizeof value);
    };
    EXPECT_EQ(parse_entries(buffer, 0).front().kingdom, std::nullopt);
    place(200 - 132, 101); // beyond the reach
    place(200 - 128, 3456);
    place(200 - 60, 1234);
    place(200 - 50, 200); // between the places that are read
    place(200 - 12, 99);
    place(200 - 8, 150); // too near
    EXPECT_EQ(parse_entries(buffer, 0).front().kingdom, 1234);
}

TEST(HonorRoll, ARecordWithinAnotherIsFoundWhereTheOuterIsNone)
{
    const QByteArray inner = "\n\x03xyz";
    QByteArray nested(80, '\0');
    nested.replace(10, 4,
                   "\n\x09"
                   "\t\t");
    nested.replace(14, inner.size(), inner);
    // The outer name holds a control character, so that only the inner record counts.
    EXPECT_EQ(count_records(nested), 1);
    EXPECT_EQ(parse_entries(nested, 0).front().name, u"xyz");
}

TEST(HonorRoll, OwnHonorIsTheLargestOfTheRightShapeAndRange)
{
    const QString name = QString::fromUtf8("Käthe");
    const QByteArray utf8 = name.toUtf8();
    const auto with = [&](const QByteArray &shown, quint64 honor) {
        return lone_record(64, shown, honor);
    };
    const HonorRange range = plausible_own_honor;
    EXPECT_EQ(largest_honor_of(with(utf8, 150'000) + with(utf8, 900'000), name, range), 900'000);
    EXPECT_EQ(largest_honor_of(with(utf8, 900'000) + with(utf8, 150'000), name, range), 900'000);
    EXPECT_EQ(largest_honor_of(with(utf8, 99'999), name, range), std::nullopt);
    EXPECT_EQ(largest_honor_of(with(utf8, 100'000), name, range), 100'000);
    EXPECT_EQ(largest_honor_of(with(utf8, 2'000'001), name, range), std::nullopt);
    EXPECT_EQ(largest_honor_of(with(utf8 + "x", 900'000), name, range), std::nullopt)
        << "a longer name that begins alike";
    EXPECT_EQ(largest_honor_of(with(utf8, 900'000).mid(65), name, range), std::nullopt)
        << "no room for the honor";
    EXPECT_EQ(largest_honor_of(with(utf8, 900'000), QString{}, range), std::nullopt);
    EXPECT_EQ(largest_honor_of(QByteArray(600, 'n'), QString(256, u'n'), range), std::nullopt);
}

TEST(HonorRoll, ARollKeepsTheFirstOfEachNameAndRanksByHonor)
{
    const auto entry = [](const char16_t *name, std::optional<std::int64_t> honor) {
        return LeaderboardEntry{0, QString::fromUtf16(name), honor, {}, {}};
    };
    const auto roll = ranked_roll({entry(u"low", 2'000), entry(u"none", {}), entry(u"high", 9'000),
                                   entry(u"low", 8'000), entry(u"Low", 3'000)});
    ASSERT_EQ(roll.size(), 4U);
    const std::pair<const char16_t *, int> order[] = {
        {u"high", 1}, {u"Low", 2}, {u"low", 3}, {u"none", 4}};
    for (std::size_t i = 0; i < roll.size(); ++i) {
        EXPECT_EQ(roll[i].name, QString::fromUtf16(order[i].first));
        EXPECT_EQ(roll[i].rank, order[i].second);
    }
}

TEST(HonorRoll, OnlyWholeBlocksOfZerosAreCutAndOnlyAtTheEnd)
{
    const QByteArray zeros(4096, '\0');
    const QByteArray some = QByteArray(4095, '\0') + 'x';
    EXPECT_EQ(without_zero_tail(zeros + some + zeros + zeros).size(), 8192);
    EXPECT_EQ(without_zero_tail(some + zeros.left(4095)).size(), 8191);
    EXPECT_EQ(without_zero_tail(zeros).size(), 0);
}

} // namespace
} // namespace tally::honor
