#include "data/mail/tree_reading.h"

#include <algorithm>

namespace tally::data {

std::optional<double> convertible_number(const QVariant &value)
{
    if (!value.canConvert<double>())
        return std::nullopt;
    return value.toDouble();
}

double event_time_of(const QVariantMap &root)
{
    const std::optional<double> microseconds = convertible_number(value_of(root, u"time"));
    return microseconds.value_or(0.0) / 1e6;
}

void append_loot(std::vector<LootEntry> &loot, const QVariantMap &items)
{
    for (const QVariant &item : items) {
        const QVariantMap fields = item.toMap();
        if (fields.isEmpty())
            continue;
        loot.push_back({.item_type = convertible_number(value_of(fields, u"Type")),
                        .item_subtype = convertible_number(value_of(fields, u"SubType")),
                        .value = convertible_number(value_of(fields, u"Value"))});
    }
}

double number_of_key(const QString &key)
{
    const double number = key.toDouble();
    // "nan" is a number to Qt, but one that no order can hold.
    return std::isnan(number) ? 0.0 : number;
}

QStringList keys_by_number(const QVariantMap &map)
{
    QStringList keys = map.keys();
    std::stable_sort(keys.begin(), keys.end(), [](const QString &a, const QString &b) {
        return number_of_key(a) < number_of_key(b);
    });
    return keys;
}

} // namespace tally::data
