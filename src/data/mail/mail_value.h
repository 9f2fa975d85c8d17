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

/// What it throws on a mail that would take more memory or time than any mail of the game does.
class OversizedMail : public ParseError {
public:
    using ParseError::ParseError;
};

/// Maps may stand inside one another this deep, the root map counted.
inline constexpr int max_nesting = 512;
/// A mail may hold so many keys with their values. Large mails of the game hold some ten thousand.
inline constexpr qsizetype max_values = 1'000'000;
/// So long may the texts of a mail be together, keys included: two of the longest there can be.
inline constexpr qsizetype max_text_bytes = 20'000'000;

/// Decodes the key/value tree of a mail file. The bytes before the tree's root marker and behind
/// its end are ignored. Nodes hold `int`, `double`, `QString` or `QVariantMap`; numeric keys become
/// decimal text; of equal keys the last one wins. The result does not refer to `bytes`.
/// \throws ParseError
QVariantMap parse_bytes(QByteArrayView bytes);

/// The value of `key` found first, depth first: a direct hit in a map beats anything deeper, and
/// deeper maps are searched in ascending order of their key texts. Invalid if the key is nowhere.
QVariant find_first(const QVariant &node, const QString &key);

} // namespace tally::data
