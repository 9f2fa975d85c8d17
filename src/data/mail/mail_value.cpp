#include "mail/mail_value.h"

#include "mail/key_marker.h"
#include "mail/map_shapes.h"

#include <QMetaType>
#include <QVarLengthArray>
#include <QVariantList>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>
#include <memory>
#include <span>

namespace tally::data {
namespace {

enum Tag : char { small_tag = 0x01, number_tag = 0x03, text_tag = 0x04, map_tag = 0x05 };
constexpr uchar map_end = 0xff;
constexpr quint32 max_text_length = 10'000'000;

/// The root map's tag and its first key, "mailScene".
constexpr QByteArrayView root_marker("\x05\x04\x09\0\0\0mailScene", 15);

QString text_of_number(double key)
{
    if (std::isfinite(key) && key == std::floor(key) && std::abs(key) < 1e15)
        return QString::number(static_cast<qint64>(key));
    return QString::number(key, 'g', 15);
}

QString text_of_key(QByteArrayView encoded)
{
    switch (encoded.front()) {
    case small_tag:
        return QString::number(static_cast<uchar>(encoded[1]));
    case number_tag:
        return text_of_number(qFromBigEndian<double>(encoded.data() + 1));
    default:
        return QString::fromUtf8(encoded.sliced(5));
    }
}

quint64 hash_of(QByteArrayView key)
{
    // Length and last bytes tell keys apart best: "HId" from "HId2", 1.0 from 2.0.
    quint64 tail = 0;
    const qsizetype count = std::min<qsizetype>(key.size(), sizeof tail);
    std::memcpy(&tail, key.data() + key.size() - count, static_cast<size_t>(count));
    return (tail ^ static_cast<quint64>(key.size()) << 56) * 0x9e3779b97f4a7c15u;
}

/// The texts of keys met before in this mail, found by their encoded bytes. A mail repeats few keys
/// many times, and making their texts took most of the decoding. A slot is simply overwritten by
/// another key that falls into it.
class KeyTexts {
public:
    const QString &text_of(QByteArrayView encoded)
    {
        Slot &slot = slots_[hash_of(encoded) >> 56];
        if (slot.encoded != encoded)
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
    {}

    /// Reads one value into an invalid variant.
    void read_value(QVariant &value, int depth, quint64 context)
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
            read_map(value, depth + 1, context);
            return;
        default:
            throw ParseError(QStringLiteral("unknown tag 0x%1 at pos %2")
                                 .arg(QString::number(tag, 16), QString::number(pos_ - 1)));
        }
    }

private:
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
            read_entries(tree, {}, depth, context);
        std::construct_at(&value, QVariantMap(std::move(tree)));
    }

    /// Fills in the values of a blank map as long as the keys are those of its shape, and goes on
    /// without a shape from the first other key.
    void read_known_entries(Tree &tree, const MapShape &shape, int depth, quint64 context)
    {
        const qsizetype first = values_.size();
        for (auto &entry : tree)
            values_.append(&entry.second);
        size_t known = 0;
        for (; known < shape.keys.size() && next_is(shape.keys[known]); ++known) {
            const QByteArrayView key = shape.keys[known];
            pos_ += key.size();
            QVariant &value = *values_[first + shape.ranks[known]];
            if (value.isValid())
                value.clear(); // of equal keys the last one wins
            read_value(value, depth, context_below(context, key));
        }
        values_.resize(first);
        if (known == shape.keys.size() && at_map_end()) {
            shapes_.confirm(context);
            return;
        }
        std::erase_if(tree, [](const auto &entry) { return !entry.second.isValid(); });
        read_entries(tree, std::span(shape.keys).first(known), depth, context);
    }

    /// Reads the rest of a map whose first keys are `known`, and remembers its shape.
    void read_entries(Tree &tree, std::span<const QByteArrayView> known, int depth, quint64 context)
    {
        const qsizetype first = map_keys_.size();
        map_keys_.append(known.data(), static_cast<qsizetype>(known.size()));
        while (!at_map_end()) {
            const QByteArrayView key = read_key(depth);
            map_keys_.append(key);
            QVariant &value = tree[key_texts_.text_of(key)];
            if (value.isValid())
                value.clear(); // of equal keys the last one wins
            read_value(value, depth, context_below(context, key));
        }
        const std::span keys(map_keys_.cbegin() + first, map_keys_.cend());
        if (MapShape *shape = shapes_.replace_expected(context, keys.size()))
            *shape = shape_of(keys, tree);
        map_keys_.resize(first);
    }

    MapShape shape_of(std::span<const QByteArrayView> keys, const Tree &tree)
    {
        MapShape shape;
        for (const auto &[text, value] : tree)
            shape.blank.emplace_hint(shape.blank.end(), text, QVariant());
        shape.keys.assign(keys.begin(), keys.end());
        for (const QByteArrayView key : keys) {
            const auto place = tree.find(key_texts_.text_of(key));
            shape.ranks.push_back(static_cast<quint32>(std::distance(tree.begin(), place)));
        }
        return shape;
    }

    /// Maps below the same named key look alike, and so do all the elements of an array.
    static quint64 context_below(quint64 context, QByteArrayView key)
    {
        return key.front() == text_tag ? hash_of(key) : context + 1;
    }

    bool next_is(QByteArrayView encoded) const
    {
        return encoded.size() <= size_ - pos_ &&
               std::memcmp(data_ + pos_, encoded.data(), static_cast<size_t>(encoded.size())) == 0;
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
        read_value(key, depth, 0);
        QVariant value;
        read_value(value, depth, 0);
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
        pos_ += length;
        return {data_ + pos_ - length, static_cast<qsizetype>(length)};
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
    KeyTexts key_texts_;
    MapShapes shapes_;
    // Of all maps that are being read, innermost last. They hardly ever leave the stack: a large
    // allocation makes malloc sort out all the nodes that the last mail's tree gave back.
    QVarLengthArray<QVariant *, 512> values_;
    QVarLengthArray<QByteArrayView, 512> map_keys_;
};

} // namespace

QVariantMap parse_bytes(QByteArrayView bytes)
{
    const qsizetype root = find_offset(bytes, root_marker);
    if (root < 0)
        throw ParseError(QStringLiteral("mailScene marker not found"));
    MailReader reader(bytes, root);
    QVariant value;
    reader.read_value(value, 0, 0);
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
