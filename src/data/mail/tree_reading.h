#pragma once

#include "data/mail/loot_entry.h"
#include "data/values/numbers.h"

#include <QStringList>
#include <QStringView>
#include <QVariantMap>

#include <cmath>
#include <optional>
#include <vector>

namespace tally::data {

/// Reading the decoder's tree, as the extractors of all kinds of mail do it.

/// A string literal as a `QString` that refers to it instead of copying it.
inline QString literal(QStringView text)
{
    return QString::fromRawData(text.data(), text.size());
}

/// The value of a key (a literal), invalid if there is none.
inline QVariant value_of(const QVariantMap &map, QStringView key)
{
    return map.value(literal(key));
}

inline QVariantMap map_of(const QVariantMap &map, QStringView key)
{
    return value_of(map, key).toMap();
}

inline QString text_of(const QVariantMap &map, QStringView key)
{
    return value_of(map, key).toString();
}

/// A number, or nothing if the value's type has no conversion to one. A text that is no number
/// counts as 0, as `QVariant` has it.
std::optional<double> convertible_number(const QVariant &value);

/// Converts world coordinates to tiles: six units a tile, rounded half away from zero. Nothing for
/// a tile that an `int` cannot hold.
inline std::optional<int> tile_of(double world)
{
    return to_int(std::round(world / 6.0));
}

/// The time of a mail, in seconds since the Unix epoch: mails give microseconds. 0 if it has none.
double event_time_of(const QVariantMap &root);

/// Appends an entry for each non-empty map of a loot list.
void append_loot(std::vector<LootEntry> &loot, const QVariantMap &items);

/// The keys of an array of the game in ascending order of their numbers: 2 before 10. A key that is
/// no number counts as 0.
QStringList keys_by_number(const QVariantMap &map);

/// The number that a key's text spells, 0 if it spells none.
double number_of_key(const QString &key);

} // namespace tally::data
