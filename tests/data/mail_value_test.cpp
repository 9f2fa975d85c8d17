#include "mail/mail_value.h"

#include "mail_encoder.h"
#include "support/plain_decoder.h"
#include "support/print_qt.h"

#include <QThread>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

using namespace tally;
using namespace tally::sample;
using namespace Qt::StringLiterals;
using data::find_first;
using data::parse_bytes;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The root map's tag and its first key, 15 bytes.
const QByteArray root_marker = QByteArray::fromHex("050409000000") + "mailScene";

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

/// A mail whose deepest map stands `levels` maps deep, the root counted.
QByteArray nested_mail(int levels)
{
    const QByteArray open = entry("a", hex("05"));
    return root_marker + map() + open.repeated(levels - 1) + QByteArray(levels, '\xff');
}

QString error_of(const QByteArray &mail)
{
    try {
        parse_bytes(mail);
        return u"no error"_s;
    } catch (const data::ParseError &error) {
        return QString::fromUtf8(error.what());
    }
}

struct Damage {
    const char *name;
    QByteArray mail;
    QString error;
};

void PrintTo(const Damage &damage, std::ostream *out)
{
    *out << damage.name;
}

class MailDamage : public testing::TestWithParam<Damage> {};

struct KeyCase {
    const char *name;
    QByteArray key;
    QString text;
};

void PrintTo(const KeyCase &key, std::ostream *out)
{
    *out << key.name;
}

class MailKey : public testing::TestWithParam<KeyCase> {};

template <typename T>
std::string name_of(const testing::TestParamInfo<T> &info)
{
    return info.param.name;
}

} // namespace

TEST(MailValue, SmallestMailIsAnEmptyScene)
{
    EXPECT_EQ(parse_bytes(root_marker + hex("05ffff")),
              QVariantMap({{u"mailScene"_s, QVariantMap()}}));
}

TEST(MailValue, ValuesKeepTheirTypes)
{
    const QByteArray mail = root_marker +
                            map({entry("type", text("Battle")), entry("flag", small_value(255)),
                                 entry("level", hex("034046800000000000"))}) +
                            "\xff";
    EXPECT_EQ(test::description(parse_bytes(mail)),
              u"{t9:mailScene={t4:flag=i255,t5:level=d4046800000000000,t4:type=t6:Battle,},}");
}

TEST(MailValue, OnlyTheTreeBehindTheFirstMarkerIsRead)
{
    const QByteArray first = mail(entry("a", small_value(1)), "header\x05\x04");
    EXPECT_EQ(parse_bytes(first + mail(entry("a", small_value(2)))).value(u"a"_s), 1);
    EXPECT_EQ(parse_bytes(first + "anything").value(u"a"_s), 1);
}

TEST(MailValue, TreeOutlivesItsBytes)
{
    auto bytes = std::make_unique<QByteArray>(mail(entry("name", text("Ada"))));
    const QVariantMap tree = parse_bytes(*bytes);
    bytes->fill('x');
    bytes.reset();
    EXPECT_EQ(tree.value(u"name"_s), u"Ada"_s);
}

TEST(MailValue, BadUtf8IsNoError)
{
    const QVariantMap tree = parse_bytes(mail(entry("\xc3\x28", text("a\xff"))));
    EXPECT_EQ(tree.value(u"\ufffd("_s), u"a\ufffd"_s);
}

TEST(MailValue, LongestTextIsRead)
{
    const QByteArray longest(10'000'000, 'x');
    EXPECT_EQ(parse_bytes(mail(entry("a", text(longest)))).value(u"a"_s).toString().size(),
              longest.size());
    EXPECT_EQ(error_of(mail(entry("a", text(longest + "x")))),
              u"suspicious string length: 10000001");
}

TEST_P(MailKey, BecomesText)
{
    const QVariantMap tree = parse_bytes(mail(GetParam().key + small_value(1)));
    EXPECT_EQ(tree.size(), 2);
    EXPECT_EQ(tree.value(GetParam().text), 1);
}

INSTANTIATE_TEST_SUITE_P(
    MailValue, MailKey,
    testing::Values(KeyCase{"SmallInteger", small_value(200), u"200"_s},
                    KeyCase{"WholeNumber", number(3.0), u"3"_s},
                    KeyCase{"NegativeZero", number(-0.0), u"0"_s},
                    KeyCase{"NegativeNumber", number(-7.0), u"-7"_s},
                    KeyCase{"Fraction", number(2.5), u"2.5"_s},
                    KeyCase{"FifteenDigits", number(0.1 + 0.2), u"0.3"_s},
                    KeyCase{"LastInteger", number(999'999'999'999'999.0), u"999999999999999"_s},
                    KeyCase{"TooLargeForAnInteger", number(1e15), u"1e+15"_s},
                    KeyCase{"NegativeTooLarge", number(-1e15), u"-1e+15"_s},
                    KeyCase{"Infinity", number(infinity), u"inf"_s},
                    KeyCase{"NotANumber", number(std::nan("")), u"nan"_s},
                    KeyCase{"EmptyText", text(""), u""_s}, KeyCase{"Text", text("Ets"), u"Ets"_s}),
    name_of<KeyCase>);

TEST(MailValue, LaterOfEqualKeysWins)
{
    const QByteArray by_number = entry(3.0, small_value(1));
    const QByteArray by_integer = small_value(3) + small_value(2);
    const QByteArray by_text = entry("3", small_value(3));
    EXPECT_EQ(parse_bytes(mail(by_number + by_integer)).value(u"3"_s), 2);
    EXPECT_EQ(parse_bytes(mail(by_text + by_integer + by_number)).value(u"3"_s), 1);
    EXPECT_EQ(parse_bytes(mail(by_number + by_number + by_text)).value(u"3"_s), 3);
}

TEST_P(MailDamage, IsNamedWithItsPlace)
{
    EXPECT_EQ(error_of(GetParam().mail), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    MailValue, MailDamage,
    testing::Values(
        Damage{"Empty", "", u"mailScene marker not found"_s},
        Damage{"NoMarker", "garbage no marker", u"mailScene marker not found"_s},
        Damage{"HalfAMarker", root_marker.chopped(1), u"mailScene marker not found"_s},
        Damage{"BehindAKey", root_marker, u"EOF reading tag at pos 15"_s},
        Damage{"BehindAKeyWithHeader", "xyz" + root_marker, u"EOF reading tag at pos 18"_s},
        Damage{"InASmallInteger", root_marker + hex("01"), u"EOF at pos 16"_s},
        Damage{"InANumber", root_marker + hex("0340468000000000"), u"EOF at pos 16"_s},
        Damage{"InALength", root_marker + hex("04050000"), u"EOF at pos 16"_s},
        Damage{"InAText", root_marker + text("abcde").chopped(1), u"EOF at pos 20"_s},
        Damage{"InALongestText", root_marker + hex("0480969800"), u"EOF at pos 20"_s},
        Damage{"InANumberKey", root_marker + small_value(1) + hex("0300"), u"EOF at pos 18"_s},
        Damage{"InASmallKey", root_marker + small_value(1) + hex("01"), u"EOF at pos 18"_s},
        Damage{"InATextKey", root_marker + small_value(1) + text("ab").chopped(1),
               u"EOF at pos 22"_s},
        Damage{"BehindAValue", root_marker + small_value(7), u"EOF mid-map"_s},
        Damage{"InAnEmptyMap", root_marker + hex("05"), u"EOF mid-map"_s},
        Damage{"BehindAMap", root_marker + map(), u"EOF mid-map"_s},
        Damage{"TooLongText", root_marker + hex("0481969800"),
               u"suspicious string length: 10000001"_s},
        Damage{"HugeText", root_marker + hex("04ffffffff"),
               u"suspicious string length: 4294967295"_s},
        Damage{"TooLongKey", root_marker + small_value(1) + hex("0481969800"),
               u"suspicious string length: 10000001"_s},
        Damage{"TagZero", root_marker + hex("00"), u"unknown tag 0x0 at pos 15"_s},
        Damage{"TagTwo", root_marker + hex("02"), u"unknown tag 0x2 at pos 15"_s},
        Damage{"TagSix", root_marker + hex("06"), u"unknown tag 0x6 at pos 15"_s},
        Damage{"EndAsValue", root_marker + hex("ff"), u"unknown tag 0xff at pos 15"_s},
        Damage{"TagOfAKey", root_marker + small_value(7) + hex("ab"),
               u"unknown tag 0xab at pos 17"_s},
        Damage{"MapAsKey", mail(map() + small_value(1)), u"unsupported key type: QVariantMap"_s},
        Damage{"MapAsKeyWithoutValue", root_marker + map() + map(), u"EOF reading tag at pos 19"_s},
        Damage{"MapAsKeyWithBadValue", root_marker + map() + map() + hex("02"),
               u"unknown tag 0x2 at pos 19"_s}),
    name_of<Damage>);

TEST(MailValue, DeepestMailFitsASmallStack)
{
    const QByteArray deepest = nested_mail(data::max_nesting);
    QVariant found;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        QVariant tree = parse_bytes(deepest);
        find_first(tree, u"b"_s);
        found = find_first(tree, u"mailScene"_s);
        tree.clear();
    }));
    thread->setStackSize(1 << 20);
    thread->start();
    ASSERT_TRUE(thread->wait());
    EXPECT_EQ(found, QVariantMap());
}

TEST(MailValue, DeeperMailIsRefusedAtTheMapTooMany)
{
    const auto too_deep_at = [](qsizetype pos) {
        return u"nesting too deep at pos %1"_s.arg(pos);
    };
    const qsizetype first = root_marker.size() + map().size();
    const qsizetype each = entry("a", hex("05")).size();
    const qsizetype tag = first + 512 * each - 1;
    EXPECT_EQ(error_of(nested_mail(513)), too_deep_at(tag));
    EXPECT_EQ(error_of(nested_mail(1'000'000)), too_deep_at(tag));
    // The maps of a key are as deep as those of its value.
    const QByteArray as_key = root_marker + map() + hex("05").repeated(600);
    EXPECT_EQ(error_of(as_key), too_deep_at(first + 511));
}

TEST(FindFirst, ShallowHitBeatsDeeperOnes)
{
    const QVariantMap tree = parse_bytes(root_marker + map({entry("level", number(45))}) +
                                         entry("a", map({entry("level", small_value(1))})) +
                                         entry("level", small_value(9)) + "\xff");
    EXPECT_EQ(find_first(tree, u"level"_s), 9);
}

TEST(FindFirst, SmallestKeyTextIsSearchedFirst)
{
    const QByteArray deep = map({entry("x", map({entry("level", small_value(10))}))});
    const QVariantMap tree =
        parse_bytes(mail(entry(2.0, map({entry("level", small_value(2))})) + entry(10.0, deep)));
    EXPECT_EQ(find_first(tree, u"level"_s), 10);
}

TEST(FindFirst, ListsAreSearchedInOrder)
{
    const QVariantMap one{{u"a"_s, 1}};
    const QVariantMap two{{u"a"_s, 2}};
    EXPECT_EQ(find_first(QVariantList{5, two, one}, u"a"_s), 2);
    EXPECT_EQ(find_first(QVariantMap{{u"list"_s, QVariantList{one}}}, u"a"_s), 1);
}

TEST(FindFirst, KeyThatIsNowhereIsInvalid)
{
    EXPECT_FALSE(find_first(parse_bytes(mail(entry("a", map()))), u"b"_s).isValid());
    EXPECT_FALSE(find_first(QVariant(5), u"a"_s).isValid());
    EXPECT_FALSE(find_first(QVariant(), u"a"_s).isValid());
}
