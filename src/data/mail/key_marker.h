#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

namespace tally::data {

/// Reading single values straight out of a mail's bytes, without decoding the tree. All reads are
/// bounds-checked and none throws.

/// A text in its stream form: tag 04, length as 32 bits little-endian, the bytes. Because the
/// length stands in front, the marker of "HId" does not match inside "HId2".
QByteArray key_marker(QByteArrayView text);

/// Offset of the first `needle` at or behind `from`, or -1. An empty needle is nowhere.
qsizetype find_offset(QByteArrayView bytes, QByteArrayView needle, qsizetype from = 0);

/// All offsets of `needle` in ascending order, overlapping ones included.
std::vector<qsizetype> find_all_offsets(QByteArrayView bytes, QByteArrayView needle);

inline bool holds(QByteArrayView bytes, QByteArrayView needle)
{
    return find_offset(bytes, needle) >= 0;
}

/// The number whose tag 03 stands at `pos`: eight bytes, big-endian IEEE 754.
std::optional<double> double_at(QByteArrayView bytes, qsizetype pos);

/// The bytes of the text whose tag 04 stands at `pos`, if it is at most `max_length` bytes long.
std::optional<QByteArrayView> text_at(QByteArrayView bytes, qsizetype pos, quint32 max_length);

} // namespace tally::data
