#pragma once

#include <QColor>
#include <QString>

#include <concepts>
#include <optional>

namespace tally::ui {

/// The colours of an item's tile; absent ones are not painted.
struct ItemBadge {
    std::optional<QColor> fill;
    std::optional<QColor> border;

    bool operator==(const ItemBadge &) const = default;
};

/// Whatever carries what the reference tables say about an item.
template <typename Record>
concept ItemRecord = std::convertible_to<decltype(Record::name), QString> &&
    std::convertible_to<decltype(Record::unit), QString> &&
    std::convertible_to<decltype(Record::unit_value), double>;

/// The tier of an item, told by its unit and by words in its name.
ItemBadge item_badge(const QString &unit, const QString &name, double unit_value);
/// How much one piece holds: minutes of a speedup ("60m"), or a number of at least 2; else empty.
QString unit_label(const QString &unit, double unit_value);

template <ItemRecord Record>
ItemBadge item_badge(const Record &item)
{
    return item_badge(item.unit, item.name, item.unit_value);
}

template <ItemRecord Record>
QString unit_label(const Record &item)
{
    return unit_label(item.unit, item.unit_value);
}

} // namespace tally::ui
