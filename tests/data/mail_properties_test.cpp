#include "data/mail/mail_value.h"

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
        static const QByteArrayList keys = {text("a"),  text("b"),    text("c"),       text("1"),
                                            number(1),  number(2),    small_value(1),  number(2.5),
                                            text("aa"), number(-0.0), text("\xc3\x28")};
        const QByteArray key = keys.at(static_cast<qsizetype>(choose(11)));
        return key + value(depth);
    }

    QByteArray leaf()
    {
        static const QByteArrayList leaves = {text("x"),
                                              text(""),
                                              text("名前 \xf0\x9f\x90\xba"),
                                              text("a\xff"),
                                              number(-0.0),
                                              number(2.5),
                                              number(std::numeric_limits<double>::quiet_NaN()),
                                              number(std::numeric_limits<double>::denorm_min())};
        return choose(2) == 0 ? small_value(static_cast<quint8>(next_))
                              : leaves.at(static_cast<qsizetype>(choose(8)));
    }

    QByteArray value(int depth)
    {
        if (depth == 5 || choose(3) == 0)
            return leaf();
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

RC_GTEST_PROP(MailProperties, MapsThatLookAlikeAreReadAsAPlainDecoderReadsThemWholeOrDamaged, ())
{
    const auto choices = *rc::gen::scale(4.0, rc::gen::arbitrary<std::vector<quint8>>());
    QByteArray mail = AlikeMaps(choices).mail();
    RC_ASSERT(outcome(mail).toStdString() == test::PlainDecoder::outcome(mail).toStdString());
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
