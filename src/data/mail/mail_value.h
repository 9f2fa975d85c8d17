#pragma once

#include <QByteArrayView>
#include <QString>
#include <QVariantMap>

#include <stdexcept>

namespace tally::data {

/// What the decoder throws on input that is no mail or a damaged one.
class ParseError : public std::runtime_error {
public:
    explicit ParseError(const QString &what) : std::runtime_error(what.toStdString()) {}
};

/// Maps may stand inside one another this deep, the root map counted.
inline constexpr int max_nesting = 512;

/// Decodes the key/value tree of a mail file. The bytes before the tree's root marker and behind
/// its end are ignored. Nodes hold `int`, `double`, `QString` or `QVariantMap`; numeric keys become
/// decimal text; of equal keys the last one wins. The result does not refer to `bytes`.
/// \throws ParseError
QVariantMap parse_bytes(QByteArrayView bytes);

/// The value of `key` found first, depth first: a direct hit in a map beats anything deeper, and
/// deeper maps are searched in ascending order of their key texts. Invalid if the key is nowhere.
QVariant find_first(const QVariant &node, const QString &key);

} // namespace tally::data
