#include "data/mail/key_marker.h"

#include <QtEndian>

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tally::data {
namespace {

constexpr char number_tag = '\x03';
constexpr char text_tag = '\x04';

bool matches_at(QByteArrayView bytes, QByteArrayView needle, qsizetype pos)
{
    return std::memcmp(bytes.data() + pos, needle.data(), static_cast<size_t>(needle.size())) == 0;
}

} // namespace

QByteArray key_marker(QByteArrayView text)
{
    QByteArray marker(5, text_tag);
    qToLittleEndian(static_cast<quint32>(text.size()), marker.data() + 1);
    return marker.append(text);
}

qsizetype find_offset(QByteArrayView bytes, QByteArrayView needle, qsizetype from)
{
    if (needle.isEmpty() || from < 0)
        return -1;
    const qsizetype last_start = bytes.size() - needle.size();
    qsizetype pos = from;

#if defined(__SSE2__)
    // Sixteen starts at a time: only where both the needle's middle and its last byte fit is the
    // rest compared. The first bytes of a key marker (tag and length) stand everywhere in a mail.
    const qsizetype middle = needle.size() / 2;
    const qsizetype last = needle.size() - 1;
    const __m128i middle_byte = _mm_set1_epi8(needle[middle]);
    const __m128i last_byte = _mm_set1_epi8(needle[last]);
    const auto load = [&bytes](qsizetype at) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes.data() + at));
    };
    for (; pos <= last_start - 15; pos += 16) {
        const __m128i both = _mm_and_si128(_mm_cmpeq_epi8(load(pos + middle), middle_byte),
                                           _mm_cmpeq_epi8(load(pos + last), last_byte));
        auto candidates = static_cast<unsigned>(_mm_movemask_epi8(both));
        for (; candidates != 0; candidates &= candidates - 1) {
            const qsizetype start = pos + std::countr_zero(candidates);
            if (matches_at(bytes, needle, start))
                return start;
        }
    }
#endif

    for (; pos <= last_start; ++pos) {
        if (matches_at(bytes, needle, pos))
            return pos;
    }
    return -1;
}

std::vector<qsizetype> find_all_offsets(QByteArrayView bytes, QByteArrayView needle)
{
    std::vector<qsizetype> offsets;
    for (qsizetype pos = find_offset(bytes, needle); pos >= 0;
         pos = find_offset(bytes, needle, pos + 1))
        offsets.push_back(pos);
    return offsets;
}

std::optional<double> double_at(QByteArrayView bytes, qsizetype pos)
{
    if (pos < 0 || pos > bytes.size() - 9 || bytes[pos] != number_tag)
        return std::nullopt;
    return qFromBigEndian<double>(bytes.data() + pos + 1);
}

std::optional<QByteArrayView> text_at(QByteArrayView bytes, qsizetype pos, quint32 max_length)
{
    if (pos < 0 || pos > bytes.size() - 5 || bytes[pos] != text_tag)
        return std::nullopt;
    const auto length = qFromLittleEndian<quint32>(bytes.data() + pos + 1);
    if (length > max_length || length > bytes.size() - (pos + 5))
        return std::nullopt;
    return bytes.sliced(pos + 5, length);
}

} // namespace tally::data
