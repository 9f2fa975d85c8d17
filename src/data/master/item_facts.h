#pragma once

#include "data/master/master_cache.h"

namespace tally::data {

/// A record of an item with what the reference tables know about it at this moment. Any record will
/// do that has `item_type` and `item_subtype`, and `name`, `unit_value`, `unit` and `icon` to fill.
template <typename Record>
Record with_item_facts(Record record)
{
    ItemInfo item = MasterCache::instance().item(record.item_type, record.item_subtype);
    record.name = std::move(item.name);
    record.unit_value = item.unit_value;
    record.unit = std::move(item.unit);
    record.icon = std::move(item.icon);
    return record;
}

} // namespace tally::data
