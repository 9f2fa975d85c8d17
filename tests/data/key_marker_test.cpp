#include "data/mail/key_marker.h"

#include "mail_encoder.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <limits>

using namespace tally::data;
using namespace tally::sample;
using testing::IsEmpty;

namespace {

std::vector<qsizetype> offsets_found_plainly(const QByteArray &bytes, const QByteArray &needle)
{
    std::vector<qsizetype> offsets;
    for (qsizetype pos = 0; pos + needle.size() <= bytes.size(); ++pos) {
        if (!needle.isEmpty() && bytes.sliced(pos, needle.size()) == needle)
            offsets.push_back(pos);
    }
    return offsets;
}

/// Bytes of a small alphabet, so that parts of the needle stand everywhere.
QByteArray few_letters(int max_size)
{
    const auto size = *rc::gen::inRange(0, max_size);
    const auto letters = *rc::gen::container<std::string>(static_cast<size_t>(size),
                                                          rc::gen::element('a', 'b', '\0', '\x04'));
    return QByteArray::fromStdString(letters);
}

} // namespace

TEST(KeyMarker, HoldsTagAndLength)
{
    EXPECT_EQ(key_marker("NpcType"), QByteArray::fromHex("04070000004e706354797065"));
    EXPECT_EQ(key_marker(QByteArray(300, 'x')).first(5), QByteArray::fromHex("042c010000"));
}

TEST(KeyMarker, DoesNotMatchInsideALongerKey)
{
    const QByteArray bytes = entry("HId2", number(1)) + entry("xHId", number(2));
    EXPECT_THAT(find_all_offsets(bytes, key_marker("HId")), IsEmpty());
    EXPECT_TRUE(holds(bytes, "HId"));
}

TEST(FindOffsets, NothingIsFoundWhereNothingFits)
{
    EXPECT_EQ(find_offset("abc", ""), -1);
    EXPECT_EQ(find_offset("", "a"), -1);
    EXPECT_EQ(find_offset("ab", "abc"), -1);
    EXPECT_EQ(find_offset("abc", "c", 3), -1);
    EXPECT_EQ(find_offset("abc", "a", -1), -1);
    EXPECT_EQ(find_offset("abc", "c", std::numeric_limits<qsizetype>::max()), -1);
}

RC_GTEST_PROP(FindOffsets, AllAreFoundAsByAPlainSearch, ())
{
    // Exact copies on the heap: a read beyond either end is a fault of the sanitizer.
    const QByteArray needle = few_letters(*rc::gen::element(2, 4, 20, 40));
    const QByteArray bytes =
        few_letters(100) + needle.repeated(*rc::gen::inRange(0, 4)) + few_letters(100);
    RC_ASSERT(find_all_offsets(bytes, needle) == offsets_found_plainly(bytes, needle));
}

TEST(DoubleAt, NeedsItsTagAndEightBytes)
{
    const QByteArray bytes = "x" + number(45.0);
    EXPECT_EQ(double_at(bytes, 1), 45.0);
    EXPECT_EQ(double_at(bytes, 0), std::nullopt);
    EXPECT_EQ(double_at(bytes, 2), std::nullopt);
    EXPECT_EQ(double_at(bytes, -1), std::nullopt);
    EXPECT_EQ(double_at(bytes, std::numeric_limits<qsizetype>::max()), std::nullopt);
    EXPECT_EQ(double_at(QByteArrayView(bytes).chopped(1), 1), std::nullopt);
}

TEST(TextAt, MustBeShortEnoughAndWhole)
{
    const QByteArray bytes = "x" + text("abcde");
    EXPECT_EQ(text_at(bytes, 1, 5), QByteArrayView("abcde"));
    EXPECT_EQ(text_at(bytes, 1, 4), std::nullopt);
    EXPECT_EQ(text_at(bytes, 0, 5), std::nullopt);
    EXPECT_EQ(text_at(bytes, -1, 5), std::nullopt);
    EXPECT_EQ(text_at(QByteArrayView(bytes).chopped(1), 1, 5), std::nullopt);
    EXPECT_EQ(text_at(QByteArrayView(bytes).first(5), 1, 5), std::nullopt);
    EXPECT_EQ(text_at(QByteArray::fromHex("04ffffffff61"), 0, 0xffffffff), std::nullopt);
}
