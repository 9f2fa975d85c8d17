#include "mail_encoder.h"

#include <QtEndian>

namespace tally::sample {
namespace {

constexpr char small_tag = '\x01';
constexpr char number_tag = '\x03';
constexpr char text_tag = '\x04';
constexpr char map_tag = '\x05';
constexpr char map_end = '\xff';

} // namespace

QByteArray small_value(quint8 value)
{
    return QByteArray(1, small_tag) + static_cast<char>(value);
}

QByteArray number(double value)
{
    QByteArray bytes(9, number_tag);
    qToBigEndian(value, bytes.data() + 1);
    return bytes;
}

QByteArray text(QByteArrayView utf8)
{
    QByteArray bytes(5, text_tag);
    qToLittleEndian(static_cast<quint32>(utf8.size()), bytes.data() + 1);
    return bytes.append(utf8);
}

QByteArray entry(QByteArrayView key, const QByteArray &value)
{
    return text(key) + value;
}

QByteArray entry(double key, const QByteArray &value)
{
    return number(key) + value;
}

QByteArray map(const QByteArray &entries)
{
    return QByteArray(1, map_tag) + entries + map_end;
}

QByteArray map(std::initializer_list<QByteArray> entries)
{
    QByteArray all;
    for (const QByteArray &one : entries)
        all += one;
    return map(all);
}

QByteArray array(const QByteArrayList &values)
{
    QByteArray entries;
    double key = 0.0;
    for (const QByteArray &value : values)
        entries += entry(++key, value);
    return map(entries);
}

QByteArray mail(const QByteArray &entries, const QByteArray &header)
{
    return header + map(entry("mailScene", map()) + entries);
}

} // namespace tally::sample
