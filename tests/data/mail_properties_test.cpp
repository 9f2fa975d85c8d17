#include "mail/mail_value.h"

#include "mail_encoder.h"
#include "support/plain_decoder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>

using namespace tally;
using namespace tally::sample;
using namespace Qt::StringLiterals;

namespace {

QString outcome(const QByteArray &mail)
{
    try {
        return test::description(data::parse_bytes(mail));
    } catch (const data::ParseError &error) {
        return u"error: "_s + QString::fromUtf8(error.what());
    }
}

rc::Gen<QString> any_text()
{
    const auto from_utf8 = [](const std::string &bytes) {
        return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    };
    return rc::gen::map(
        rc::gen::oneOf(rc::gen::string<std::string>(),
                       rc::gen::element<std::string>("", "ÄÖ", "名前", "\xf0\x9f\x90\xba")),
        from_utf8);
}

rc::Gen<double> any_double()
{
    using limits = std::numeric_limits<double>;
    return rc::gen::oneOf(rc::gen::arbitrary<double>(),
                          rc::gen::element(limits::infinity(), -limits::infinity(),
                                           limits::denorm_min(), limits::max(), -0.0, 1e15,
                                           limits::quiet_NaN()));
}

rc::Gen<QVariant> any_tree(int levels)
{
    const auto to_variant = [](const auto &value) {
        return QVariant::fromValue(value);
    };
    const auto leaf = rc::gen::oneOf(rc::gen::map(rc::gen::inRange(0, 256), to_variant),
                                     rc::gen::map(any_double(), to_variant),
                                     rc::gen::map(any_text(), to_variant));
    if (levels == 0)
        return leaf;
    const auto to_map = [](const std::vector<std::pair<QString, QVariant>> &entries) {
        QVariantMap map;
        for (const auto &[key, value] : entries)
            map.insert(key, value);
        return QVariant(map);
    };
    // Scaled, or the trees grow with the power of their levels.
    const auto entries = rc::gen::container<std::vector<std::pair<QString, QVariant>>>(
        rc::gen::pair(any_text(), any_tree(levels - 1)));
    return rc::gen::oneOf(leaf, rc::gen::map(rc::gen::scale(0.15, entries), to_map));
}

/// Writes maps that look alike but not quite, as the choices say: few keys, in any order, repeated
/// or missing, in maps of the same few names.
class AlikeMaps {
public:
    explicit AlikeMaps(const std::vector<quint8> &choices) : choices_(choices) {}

    QByteArray mail()
    {
        QByteArray entries;
        while (next_ < choices_.size())
            entries += entry_of(0);
        return sample::mail(entries);
    }

private:
    size_t choose(size_t count) { return next_ < choices_.size() ? choices_[next_++] % count : 0; }

    QByteArray entry_of(int depth)
    {
        static const QByteArrayList keys = {text("a"),  text("b"),   text("c"),      text("1"),
                                            number(1),  number(2),   small_value(1), number(2.5),
                                            text("aa"), number(-0.0)};
        const QByteArray key = keys.at(static_cast<qsizetype>(choose(10)));
        return key + value(depth);
    }

    QByteArray value(int depth)
    {
        if (depth == 5 || choose(3) == 0)
            return choose(2) == 0 ? small_value(static_cast<quint8>(next_)) : text("x");
        // One time in two the same keys again: only then is anything predicted.
        QByteArray entries;
        if (choose(2) == 0) {
            entries = entry("a", small_value(1)) + entry("b", number(2)) + entry("c", text("3"));
        }
        for (size_t count = choose(4); count > 0; --count)
            entries += entry_of(depth + 1);
        return map(entries);
    }

    const std::vector<quint8> &choices_;
    size_t next_ = 0;
};

} // namespace

RC_GTEST_PROP(MailProperties, DecodingGivesBackWhatWasEncoded, ())
{
    QVariantMap tree{{u"mailScene"_s, *any_tree(2)}};
    tree.insert(u"rest"_s, *any_tree(4));
    RC_ASSERT(test::description(data::parse_bytes(mail_of_tree(tree))).toStdString() ==
              test::description(tree).toStdString());
}

RC_GTEST_PROP(MailProperties, MapsThatLookAlikeAreNotMistakenForEachOther, ())
{
    const auto choices = *rc::gen::scale(4.0, rc::gen::arbitrary<std::vector<quint8>>());
    const QByteArray mail = AlikeMaps(choices).mail();
    RC_ASSERT(outcome(mail).toStdString() == test::PlainDecoder::outcome(mail).toStdString());
}

RC_GTEST_PROP(MailProperties, DamageIsReportedWhereAPlainDecoderMeetsIt, ())
{
    const auto choices = *rc::gen::arbitrary<std::vector<quint8>>();
    QByteArray mail = AlikeMaps(choices).mail();
    const auto place = *rc::gen::inRange<qsizetype>(15, mail.size());
    if (*rc::gen::arbitrary<bool>())
        mail.truncate(place);
    else
        mail[place] = *rc::gen::element<char>(0, 1, 2, 3, 4, 5, 'a', '\xff');
    RC_ASSERT(outcome(mail).toStdString() == test::PlainDecoder::outcome(mail).toStdString());
}

/// The four ways in which a list of keys can change between two maps of the same name.
RC_GTEST_PROP(MailProperties, ArrayElementsMayChangeTheirKeysAtAnyPlace, ())
{
    const auto key_count = *rc::gen::inRange(1, 60);
    const auto elements = *rc::gen::inRange(2, 12);
    QByteArrayList maps;
    for (int element = 0; element < elements; ++element) {
        QByteArrayList entries;
        for (int key = 0; key < key_count; ++key)
            entries += entry(QByteArray::number(key), small_value(static_cast<quint8>(element)));
        const auto place = *rc::gen::inRange(0, key_count);
        switch (*rc::gen::inRange(0, 6)) {
        case 0:
            entries.removeAt(place);
            break;
        case 1:
            entries.insert(place, entry("extra", text("x")));
            break;
        case 2:
            entries.append(entry(QByteArray::number(place), text("again")));
            break;
        case 3:
            entries.swapItemsAt(place, 0);
            break;
        default:
            break;
        }
        maps += map(entries.join());
    }
    const QByteArray mail = sample::mail(entry("Troops", array(maps)));
    RC_ASSERT(outcome(mail).toStdString() == test::PlainDecoder::outcome(mail).toStdString());
}
