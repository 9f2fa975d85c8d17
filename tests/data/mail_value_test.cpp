#include "data/mail/mail_value.h"

#include "mail_encoder.h"
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

} // namespace

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

TEST(MailValue, LongestTextIsRead)
{
    const QByteArray longest(10'000'000, 'x');
    EXPECT_EQ(parse_bytes(mail(entry("a", text(longest)))).value(u"a"_s).toString().size(),
              longest.size());
    EXPECT_EQ(error_of(mail(entry("a", text(longest + "x")))),
              u"suspicious string length: 10000001");
}

TEST(MailValue, KeysBecomeTexts)
{
    const std::pair<QByteArray, QString> keys[] = {
        {small_value(200), u"200"_s},
        {number(3.0), u"3"_s},
        {number(-0.0), u"0"_s},
        {number(-7.0), u"-7"_s},
        {number(2.5), u"2.5"_s},
        {number(0.1 + 0.2), u"0.3"_s},
        {number(999'999'999'999'999.0), u"999999999999999"_s},
        {number(1e15), u"1e+15"_s},
        {number(-1e15), u"-1e+15"_s},
        {number(infinity), u"inf"_s},
        {number(std::nan("")), u"nan"_s},
        {text(""), u""_s},
        {text("Ets"), u"Ets"_s}};
    for (const auto &[key, as_text] : keys)
        EXPECT_EQ(parse_bytes(mail(key + small_value(1))).value(as_text), 1)
            << as_text.toStdString();
}

TEST(MailValue, DamageIsNamedWithItsPlace)
{
    const QByteArray &root = root_marker;
    const std::pair<QByteArray, const char *> damages[] = {
        {"", "mailScene marker not found"},
        {root.chopped(1), "mailScene marker not found"},
        {"xyz" + root, "EOF reading tag at pos 18"},
        {root + hex("01"), "EOF at pos 16"},
        {root + hex("0340468000000000"), "EOF at pos 16"},
        {root + hex("04050000"), "EOF at pos 16"},
        {root + text("abcde").chopped(1), "EOF at pos 20"},
        {root + hex("0480969800"), "EOF at pos 20"},
        {root + small_value(1) + hex("0300"), "EOF at pos 18"},
        {root + small_value(1) + text("ab").chopped(1), "EOF at pos 22"},
        {root + small_value(7), "EOF mid-map"},
        {root + hex("05"), "EOF mid-map"},
        {root + hex("0481969800"), "suspicious string length: 10000001"},
        {root + small_value(1) + hex("0481969800"), "suspicious string length: 10000001"},
        {root + hex("04ffffffff"), "suspicious string length: 4294967295"},
        {root + hex("00"), "unknown tag 0x0 at pos 15"},
        {root + hex("ff"), "unknown tag 0xff at pos 15"},
        {root + small_value(7) + hex("ab"), "unknown tag 0xab at pos 17"},
        {mail(map() + small_value(1)), "unsupported key type: QVariantMap"},
        {root + map() + map(), "EOF reading tag at pos 19"},
        {root + map() + map() + hex("02"), "unknown tag 0x2 at pos 19"}};
    for (const auto &[mail, error] : damages)
        EXPECT_EQ(error_of(mail), QLatin1StringView(error)) << mail.toHex().constData();
}

TEST(MailValue, TreeOfMoreThanAnyMailHoldsIsRefused)
{
    const QByteArray pair = small_value(1) + small_value(1);
    const auto tree_of = [&](qsizetype values) {
        return mail(pair.repeated(values - 1));
    };
    EXPECT_EQ(error_of(tree_of(data::max_values)), u"no error");
    EXPECT_EQ(error_of(tree_of(data::max_values + 1)), u"more than 1000000 values");
    // Maps of a shape that came before count like others.
    const QByteArray shaped = entry("m", map(pair.repeated(3)));
    EXPECT_EQ(error_of(mail(shaped.repeated(data::max_values / 4))), u"more than 1000000 values");
    const QByteArray half = entry("t", text(QByteArray(data::max_text_bytes / 2, 'x')));
    EXPECT_EQ(error_of(mail(half)), u"no error");
    EXPECT_EQ(error_of(mail(half + half)), u"more than 20000000 bytes of text");
}

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

TEST(FindFirst, ShallowHitsBeatDeeperOnesThenTheSmallestKeyTextCounts)
{
    const QVariantMap shallow = parse_bytes(
        mail(entry("a", map({entry("level", small_value(1))})) + entry("level", small_value(9))));
    EXPECT_EQ(find_first(shallow, u"level"_s), 9);
    const QByteArray deep = map({entry("x", map({entry("level", small_value(10))}))});
    const QVariantMap by_text =
        parse_bytes(mail(entry(2.0, map({entry("level", small_value(2))})) + entry(10.0, deep)));
    EXPECT_EQ(find_first(by_text, u"level"_s), 10);
    const QVariantMap one{{u"a"_s, 1}};
    EXPECT_EQ(find_first(QVariantList{5, QVariantMap{{u"a"_s, 2}}, one}, u"a"_s), 2);
    EXPECT_EQ(find_first(QVariantMap{{u"list"_s, QVariantList{one}}}, u"a"_s), 1);
    EXPECT_FALSE(find_first(by_text, u"b"_s).isValid());
    EXPECT_FALSE(find_first(QVariant(5), u"a"_s).isValid());
}
