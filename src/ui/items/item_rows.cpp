#include "ui/items/item_rows.h"

#include "data/master/master_cache.h"
#include "data/store/sql_values.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace tally::ui {
namespace {

QString item_words(const data::LootStripItem &item)
{
    QString name = data::MasterCache::instance().item(item.item_type, item.item_subtype).name;
    if (name.isEmpty())
        name = QStringLiteral("Type=%1/Sub=%2").arg(item.item_type).arg(item.item_subtype);
    return QStringLiteral("%1 x %2").arg(name).arg(item.quantity);
}

} // namespace

RowCell left_cell(const QString &text, const QVariant &exported)
{
    return {.text = text, .exported = exported};
}

RowCell centred_cell(const QString &text, const QVariant &exported)
{
    return {.text = text, .alignment = Qt::AlignCenter, .exported = exported};
}

RowCell right_cell(const QString &text, const QVariant &exported)
{
    return {.text = text, .alignment = Qt::AlignRight | Qt::AlignVCenter, .exported = exported};
}

QString tile_text(std::optional<int> x, std::optional<int> y)
{
    return x && y ? QStringLiteral("(%1, %2)").arg(*x).arg(*y) : QStringLiteral("—");
}

std::vector<data::LootStripItem> strip_items(const std::vector<data::LootEntry> &loot)
{
    std::vector<data::LootStripItem> items;
    items.reserve(loot.size());
    std::transform(
        loot.begin(), loot.end(), std::back_inserter(items), [](const data::LootEntry &entry) {
            return data::LootStripItem{data::saturated(entry.item_type.value_or(0.0)),
                                       data::saturated(entry.item_subtype.value_or(0.0)),
                                       data::saturated<qint64>(entry.value.value_or(0.0))};
        });
    return items;
}

QString loot_words(const std::vector<data::LootStripItem> &loot, const QString &separator)
{
    QStringList words;
    std::transform(loot.begin(), loot.end(), std::back_inserter(words), item_words);
    return words.join(separator);
}

} // namespace tally::ui
