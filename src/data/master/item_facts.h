#pragma once

#include "data/master/master_cache.h"

#include <functional>

namespace tally::data {

/// Tells what is known about the item of a type and subtype; answers on any thread.
using ItemLookup = std::function<ItemInfo(std::optional<double>, std::optional<double>)>;

/// What the reference tables of the program know about it at this moment.
inline ItemInfo known_item(std::optional<double> item_type, std::optional<double> item_subtype)
{
    return MasterCache::instance().item(item_type, item_subtype);
}

/// A record of an item with what is known about it. Any record will do that has `item_type` and
/// `item_subtype`, and `name`, `unit_value`, `unit` and `icon` to fill.
template <typename Record>
Record with_item_facts(Record record, const ItemLookup &item_of)
{
    ItemInfo item = item_of(record.item_type, record.item_subtype);
    record.name = std::move(item.name);
    record.unit_value = item.unit_value;
    record.unit = std::move(item.unit);
    record.icon = std::move(item.icon);
    return record;
}

} // namespace tally::data
