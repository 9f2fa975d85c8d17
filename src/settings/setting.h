#pragma once

#include <QString>

#include <limits>

namespace tally {

/// One key of the settings table with its type and its default. The table holds texts that somebody
/// may have edited by hand: `from_text` gives the default for what it cannot accept.
template <typename T>
struct Setting;

/// A whole number in decimal.
template <>
struct Setting<int> {
    const char *key;
    int fallback;
    int lowest = std::numeric_limits<int>::min(); ///< what lies outside counts as the default
    int highest = std::numeric_limits<int>::max();

    int default_value() const { return fallback; }
    int from_text(const QString &text) const;
    static QString to_text(int value) { return QString::number(value); }
};

/// A flag, "1" or "0".
template <>
struct Setting<bool> {
    const char *key;
    bool fallback;
    bool otherwise = false; ///< what any other text means

    bool default_value() const { return fallback; }
    bool from_text(const QString &text) const;
    static QString to_text(bool value) { return value ? QStringLiteral("1") : QStringLiteral("0"); }
};

/// A text, whose meaning is its reader's affair. An empty one counts as a value.
template <>
struct Setting<QString> {
    static constexpr qsizetype longest = 65'536;

    const char *key;
    const char *fallback = "";

    QString default_value() const { return QString::fromLatin1(fallback); }
    QString from_text(const QString &text) const;
    static QString to_text(const QString &value) { return value; }
};

} // namespace tally
