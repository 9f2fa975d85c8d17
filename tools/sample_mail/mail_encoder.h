#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <initializer_list>

namespace tally::sample {

/// Writes the game's mail serialisation. Every function returns the encoded bytes of one piece, and
/// pieces are put together by concatenation, so that a caller controls the order of the keys and
/// can write what no decoder accepts.

/// Tag 01: a small integer or flag.
QByteArray small_value(quint8 value);
/// Tag 03: a big-endian IEEE 754 double.
QByteArray number(double value);
/// Tag 04: UTF-8 behind its length.
QByteArray text(QByteArrayView utf8);
/// A key and its value, already encoded.
QByteArray entry(QByteArrayView key, const QByteArray &value);
QByteArray entry(double key, const QByteArray &value);
/// Tag 05: a map of the given entries.
QByteArray map(const QByteArray &entries = {});
QByteArray map(std::initializer_list<QByteArray> entries);
/// A map with the keys 1.0, 2.0, ... as the game writes its arrays.
QByteArray array(const QByteArrayList &values);

/// A whole mail: `header` (bytes without a meaning), then the root map, which begins with the key
/// "mailScene" and an empty map.
QByteArray mail(const QByteArray &entries, const QByteArray &header = {});

} // namespace tally::sample
