#include "data/mail/mail_value.h"

#include "data/mail/key_marker.h"
#include "data/mail/map_shapes.h"
#include "data/values/numbers.h"

#include <QMetaType>
#include <QVariantList>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>
#include <memory>
#include <memory_resource>
#include <span>
#include <vector>

namespace tally::data {
namespace {

enum Tag : char { small_tag = 0x01, number_tag = 0x03, text_tag = 0x04, map_tag = 0x05 };
constexpr uchar map_end = 0xff;
constexpr quint32 max_text_length = 10'000'000;

/// The root map's tag and its first key, "mailScene".
constexpr QByteArrayView root_marker("\x05\x04\x09\0\0\0mailScene", 15);

QString text_of_key(QByteArrayView encoded)
{
    switch (encoded.front()) {
    case small_tag:
        return QString::number(static_cast<uchar>(encoded[1]));
    case number_tag:
        return id_text(qFromBigEndian<double>(encoded.data() + 1));
    default:
        return QString::fromUtf8(encoded.sliced(5));
    }
}

constexpr qsizetype word = sizeof(quint64);

/// The last bytes of a key, at most a word of them. The key lies inside a mail, whose root marker
/// guarantees a word before the key's end.
quint64 tail_of(const char *key, qsizetype size)
{
    const auto foreign_bits = 8 * std::max<qsizetype>(0, word - size);
    return qFromLittleEndian<quint64>(key + size - word) >> foreign_bits;
}

quint64 hash_of(QByteArrayView key)
{
    // Length and last bytes tell keys apart best: "HId" from "HId2", 1.0 from 2.0.
    return (tail_of(key.data(), key.size()) ^ static_cast<quint64>(key.size()) << 56) *
           0x9e3779b97f4a7c15u;
}

/// Whether two keys of one size are the same. Keys are so short that a call costs more than the
/// comparison, which goes word by word; the last word may overlap the one before.
bool same_key(const char *a, const char *b, qsizetype size)
{
    for (qsizetype pos = 0; pos < size - word; pos += word) {
        if (qFromUnaligned<quint64>(a + pos) != qFromUnaligned<quint64>(b + pos))
            return false;
    }
    return tail_of(a, size) == tail_of(b, size);
}

/// The texts of keys met before in this mail, found by their encoded bytes. A mail repeats few keys
/// many times, and making their texts took most of the decoding. A slot is simply overwritten by
/// another key that falls into it.
class KeyTexts {
public:
    const QString &text_of(QByteArrayView encoded)
    {
        Slot &slot = slots_[hash_of(encoded) >> 56];
        if (slot.encoded.size() != encoded.size() ||
            !same_key(slot.encoded.data(), encoded.data(), encoded.size()))
            slot = {encoded, text_of_key(encoded)};
        return slot.text;
    }

private:
    struct Slot {
        QByteArrayView encoded;
        QString text;
    };
    static constexpr size_t slot_count = 256;

    std::array<Slot, slot_count> slots_;
};

/// The cursor of one decoding run.
class MailReader {
public:
    explicit MailReader(QByteArrayView bytes, qsizetype pos)
        : data_(bytes.data()), size_(bytes.size()), pos_(pos)
    {
        values_.reserve(usual_entries);
        entries_.reserve(usual_entries);
    }

    /// Reads the value of `key` into an invalid variant. `context` is that of the map around it.
    void read_value(QVariant &value, int depth, quint64 context, QByteArrayView key)
    {
        if (pos_ >= size_)
            throw ParseError(QStringLiteral("EOF reading tag at pos %1").arg(pos_));
        const uchar tag = byte_at(pos_++);
        // An invalid variant owns nothing, so that a new one can be made in its place: assigning
        // would make, swap and destroy two.
        switch (tag) {
        case small_tag:
            need(1);
            std::construct_at(&value, int{byte_at(pos_++)});
            return;
        case number_tag:
            std::construct_at(&value, take_number());
            return;
        case text_tag:
            std::construct_at(&value, QString::fromUtf8(take_text()));
            return;
        case map_tag:
            read_map(value, depth + 1, context_below(context, key));
            return;
        default:
            throw ParseError(QStringLiteral("unknown tag 0x%1 at pos %2")
                                 .arg(QString::number(tag, 16), QString::number(pos_ - 1)));
        }
    }

private:
    struct Entry {
        QByteArrayView key; ///< encoded
        QVariant *value;
    };

    void read_map(QVariant &value, int depth, quint64 context)
    {
        if (depth > max_nesting)
            throw ParseError(QStringLiteral("nesting too deep at pos %1").arg(pos_ - 1));
        const MapShape *shape = shapes_.expected(context);
        const bool is_expected = shape && next_is(shape->keys.front());
        Tree tree = is_expected ? Tree(shape->blank) : Tree();
        if (is_expected)
            read_known_entries(tree, *shape, depth, context);
        else
            read_entries(tree, entries_.size(), depth, context);
        std::construct_at(&value, QVariantMap(std::move(tree)));
    }

    /// Fills in the values of a blank map as long as the keys are those of its shape, and goes on
    /// without a shape from the first other key.
    void read_known_entries(Tree &tree, const MapShape &shape, int depth, quint64 context)
    {
        const bool has_equal_keys = shape.keys.size() != tree.size();
        const size_t first = values_.size();
        for (auto &entry : tree)
            values_.push_back(&entry.second);
        shapes_.enter(context);
        size_t known = 0;
        for (; known < shape.keys.size() && next_is(shape.keys[known]); ++known) {
            const QByteArrayView key = shape.keys[known];
            pos_ += key.size();
            QVariant &value = *values_[first + shape.ranks[known]];
            if (has_equal_keys)
                value.clear(); // of equal keys the last one wins
            read_value(value, depth, context, key);
        }
        shapes_.leave(context);
        count_values(known);
        const bool is_complete = known == shape.keys.size() && at_map_end();
        const size_t first_entry = entries_.size();
        if (!is_complete) {
            for (size_t i = 0; i < known; ++i)
                entries_.push_back({shape.keys[i], values_[first + shape.ranks[i]]});
        }
        values_.resize(first);
        if (is_complete) {
            shapes_.confirm(context);
            return;
        }
        std::erase_if(tree, [](const auto &entry) { return !entry.second.isValid(); });
        read_entries(tree, first_entry, depth, context);
    }

    /// Reads the rest of a map whose entries so far stand in `entries_` from `first` on, and
    /// remembers its shape.
    void read_entries(Tree &tree, size_t first, int depth, quint64 context)
    {
        while (!at_map_end()) {
            count_values(1);
            const QByteArrayView key = read_key(depth);
            const auto [place, is_new] = tree.try_emplace(key_texts_.text_of(key));
            if (!is_new)
                place->second.clear();                          // of equal keys the last one wins
            if (entries_.size() - first <= MapShapes::max_keys) // more are no shape
                entries_.push_back({key, &place->second});
            read_value(place->second, depth, context, key);
        }
        const auto entries = std::span<const Entry>(entries_).subspan(first);
        if (MapShape *shape = shapes_.replace_expected(context, entries.size()))
            fill_shape(*shape, entries, tree);
        entries_.resize(first);
    }

    void fill_shape(MapShape &shape, std::span<const Entry> entries, Tree &tree)
    {
        const size_t first = values_.size();
        for (auto &[text, value] : tree) {
            shape.blank.emplace_hint(shape.blank.end(), text, QVariant());
            values_.push_back(&value);
        }
        // Looking for the addresses in turn is faster than comparing texts: shapes are short.
        const auto places = std::span(values_).subspan(first);
        shape.keys.reserve(entries.size());
        shape.ranks.reserve(entries.size());
        for (const auto &[key, value] : entries) {
            const auto place = std::find(places.begin(), places.end(), value);
            shape.keys.push_back(key);
            shape.ranks.push_back(static_cast<quint32>(place - places.begin()));
        }
        values_.resize(first);
    }

    /// Maps below the same named key look alike, and so do all the elements of an array.
    static quint64 context_below(quint64 context, QByteArrayView key)
    {
        return key.front() == text_tag ? hash_of(key) : context + 1;
    }

    bool next_is(QByteArrayView key) const
    {
        return key.size() <= size_ - pos_ && same_key(data_ + pos_, key.data(), key.size());
    }

    bool at_map_end()
    {
        if (pos_ >= size_)
            throw ParseError(QStringLiteral("EOF mid-map"));
        if (byte_at(pos_) != map_end)
            return false;
        ++pos_;
        return true;
    }

    /// The encoded bytes of the key at the cursor.
    QByteArrayView read_key(int depth)
    {
        const qsizetype begin = pos_;
        switch (byte_at(pos_)) {
        case small_tag:
            ++pos_;
            need(1);
            ++pos_;
            break;
        case number_tag:
            ++pos_;
            take_number();
            break;
        case text_tag:
            ++pos_;
            take_text();
            break;
        default:
            refuse_key(depth);
        }
        return {data_ + begin, pos_ - begin};
    }

    /// A key that is a map, or no value at all, is judged only after the key and its value have
    /// been read, so that a broken file fails at its first broken byte.
    [[noreturn]] void refuse_key(int depth)
    {
        QVariant key;
        read_value(key, depth, 0, root_marker);
        QVariant value;
        read_value(value, depth, 0, root_marker);
        throw ParseError(
            QStringLiteral("unsupported key type: %1").arg(QLatin1StringView(key.typeName())));
    }

    double take_number()
    {
        need(8);
        pos_ += 8;
        return qFromBigEndian<double>(data_ + pos_ - 8);
    }

    QByteArrayView take_text()
    {
        need(4);
        const auto length = qFromLittleEndian<quint32>(data_ + pos_);
        pos_ += 4;
        if (length > max_text_length)
            throw ParseError(QStringLiteral("suspicious string length: %1").arg(length));
        need(length);
        text_bytes_left_ -= length;
        if (text_bytes_left_ < 0)
            throw OversizedMail(QStringLiteral("more than %1 bytes of text").arg(max_text_bytes));
        pos_ += length;
        return {data_ + pos_ - length, static_cast<qsizetype>(length)};
    }

    void count_values(size_t count)
    {
        values_left_ -= static_cast<qsizetype>(count);
        if (values_left_ < 0)
            throw OversizedMail(QStringLiteral("more than %1 values").arg(max_values));
    }

    void need(qsizetype count) const
    {
        if (count > size_ - pos_)
            throw ParseError(QStringLiteral("EOF at pos %1").arg(pos_));
    }

    uchar byte_at(qsizetype pos) const { return static_cast<uchar>(data_[pos]); }

    const char *data_;
    qsizetype size_;
    qsizetype pos_;
    qsizetype values_left_ = max_values;
    qsizetype text_bytes_left_ = max_text_bytes;
    KeyTexts key_texts_;
    MapShapes shapes_;
    // Of all maps that are being read, innermost last. They hardly ever leave the object: a large
    // allocation makes malloc sort out all the nodes that the last mail's tree gave back.
    static constexpr size_t usual_entries = 512;
    alignas(Entry)
        std::array<std::byte, usual_entries *(sizeof(QVariant *) + sizeof(Entry))> first_memory_;
    std::pmr::monotonic_buffer_resource memory_{first_memory_.data(), first_memory_.size()};
    std::pmr::vector<QVariant *> values_{&memory_};
    std::pmr::vector<Entry> entries_{&memory_};
};

} // namespace

QVariantMap parse_bytes(QByteArrayView bytes)
{
    const qsizetype root = find_offset(bytes, root_marker);
    if (root < 0)
        throw ParseError(QStringLiteral("mailScene marker not found"));
    MailReader reader(bytes, root);
    QVariant value;
    reader.read_value(value, 0, 0, root_marker);
    return value.toMap();
}

QVariant find_first(const QVariant &node, const QString &key)
{
    if (node.typeId() == QMetaType::QVariantMap) {
        const auto &map = *static_cast<const QVariantMap *>(node.constData());
        if (const auto direct = map.constFind(key); direct != map.cend())
            return *direct;
        for (const QVariant &child : map) {
            if (QVariant found = find_first(child, key); found.isValid())
                return found;
        }
    } else if (node.typeId() == QMetaType::QVariantList) {
        for (const QVariant &child : *static_cast<const QVariantList *>(node.constData())) {
            if (QVariant found = find_first(child, key); found.isValid())
                return found;
        }
    }
    return {};
}

} // namespace tally::data
