#pragma once

#include <QString>

#include <optional>

namespace tally::data {

/// One item of a loot list. Mails and store give the first three; the item facts keep their
/// defaults until a view resolves them from the reference tables.
struct LootEntry {
    std::optional<double> item_type;
    std::optional<double> item_subtype;
    std::optional<double> value;
    QString name = {};
    double unit_value = 1.0;
    QString unit = {};
    QString icon = {};
};

} // namespace tally::data
