#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <QtEndian>

#include <bit>
#include <cmath>

namespace tally::test {

/// Everything about a tree as one text. Unlike `==` it tells types and zeros apart, and finds a NaN
/// equal to itself.
inline QString description(const QVariant &node)
{
    switch (node.typeId()) {
    case QMetaType::Int:
        return QStringLiteral("i%1").arg(node.toInt());
    case QMetaType::Double:
        return u'd' + QString::number(std::bit_cast<quint64>(node.toDouble()), 16);
    case QMetaType::QString: {
        const QString text = node.toString();
        return QStringLiteral("t%1:%2").arg(QString::number(text.size()), text);
    }
    case QMetaType::QVariantMap: {
        QString entries;
        const QVariantMap map = node.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            entries += description(it.key()) + u'=' + description(it.value()) + u',';
        return u'{' + entries + u'}';
    }
    default:
        return QStringLiteral("%1?").arg(QLatin1StringView(node.typeName()));
    }
}

/// The decoder's rules in their plainest form, to compare the fast one with.
class PlainDecoder {
public:
    /// The description of a mail's tree, or "error: " and what was thrown.
    static QString outcome(QByteArrayView mail)
    {
        constexpr QByteArrayView marker("\x05\x04\x09\0\0\0mailScene", 15);
        const qsizetype root = mail.indexOf(marker);
        if (root < 0)
            return QStringLiteral("error: mailScene marker not found");
        PlainDecoder decoder(mail, root);
        try {
            return description(decoder.value(0));
        } catch (const QString &error) {
            return QStringLiteral("error: ") + error;
        }
    }

private:
    PlainDecoder(QByteArrayView mail, qsizetype pos) : mail_(mail), pos_(pos) {}

    QVariant value(int depth)
    {
        if (pos_ >= mail_.size())
            throw QStringLiteral("EOF reading tag at pos %1").arg(pos_);
        const auto tag = static_cast<uchar>(mail_[pos_++]);
        if (tag == 1)
            return static_cast<int>(static_cast<uchar>(take(1)[0]));
        if (tag == 3)
            return qFromBigEndian<double>(take(8).data());
        if (tag == 4) {
            const auto length = qFromLittleEndian<quint32>(take(4).data());
            if (length > 10'000'000)
                throw QStringLiteral("suspicious string length: %1").arg(length);
            return QString::fromUtf8(take(length));
        }
        if (tag == 5)
            return map(depth + 1);
        throw QStringLiteral("unknown tag 0x%1 at pos %2").arg(tag, 0, 16).arg(pos_ - 1);
    }

    QVariantMap map(int depth)
    {
        if (depth > 512)
            throw QStringLiteral("nesting too deep at pos %1").arg(pos_ - 1);
        QVariantMap map;
        for (;;) {
            if (pos_ >= mail_.size())
                throw QStringLiteral("EOF mid-map");
            if (mail_[pos_] == '\xff') {
                ++pos_;
                return map;
            }
            const QVariant key = value(depth);
            const QVariant entry = value(depth);
            map[text_of(key)] = entry;
        }
    }

    static QString text_of(const QVariant &key)
    {
        if (key.typeId() == QMetaType::QVariantMap)
            throw QStringLiteral("unsupported key type: QVariantMap");
        if (key.typeId() != QMetaType::Double)
            return key.toString();
        const double number = key.toDouble();
        const bool is_integer =
            std::isfinite(number) && number == std::floor(number) && std::abs(number) < 1e15;
        return is_integer ? QString::number(static_cast<qint64>(number))
                          : QString::number(number, 'g', 15);
    }

    QByteArrayView take(qsizetype count)
    {
        if (pos_ + count > mail_.size())
            throw QStringLiteral("EOF at pos %1").arg(pos_);
        pos_ += count;
        return mail_.sliced(pos_ - count, count);
    }

    QByteArrayView mail_;
    qsizetype pos_;
};

} // namespace tally::test
