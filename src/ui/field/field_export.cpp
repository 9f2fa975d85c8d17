#include "ui/field/field_export.h"

#include "ui/field/field_rows.h"
#include "ui/items/item_row_model.h"
#include "ui/parts/utc_time.h"

namespace tally::ui {
namespace {

/// A column, and what it says about an attack.
struct ExportColumn {
    const char16_t *title;
    QVariant (*value)(const FieldAttack &attack);
};

QVariant iso_time(const FieldAttack &attack)
{
    return attack.time > 0.0
               ? utc_time_text(attack.time, QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"))
               : QString();
}

QVariant ratio(const FieldAttack &attack)
{
    if (attack.enemy_kill_points < 1)
        return QString();
    return static_cast<double>(attack.my_kill_points) /
           static_cast<double>(attack.enemy_kill_points);
}

constexpr ExportColumn columns[] = {
    {u"Tour",
     [](const FieldAttack &a) -> QVariant {
         return a.tour;
     }},
    {u"Report",
     [](const FieldAttack &a) -> QVariant {
         return a.report;
     }},
    {u"Time (UTC)", iso_time},
    {u"Attack",
     [](const FieldAttack &a) -> QVariant {
         return a.number;
     }},
    {u"Attacks",
     [](const FieldAttack &a) -> QVariant {
         return a.count;
     }},
    {u"Result",
     [](const FieldAttack &a) -> QVariant {
         return outcome_text(a.outcome());
     }},
    {u"Player",
     [](const FieldAttack &a) -> QVariant {
         return a.player;
     }},
    {u"Alliance",
     [](const FieldAttack &a) -> QVariant {
         return a.alliance;
     }},
    {u"Enemy",
     [](const FieldAttack &a) -> QVariant {
         return enemy_text(a);
     }},
    {u"Enemy alliance",
     [](const FieldAttack &a) -> QVariant {
         return a.enemy_alliance;
     }},
    {u"Rally",
     [](const FieldAttack &a) -> QVariant {
         return int(a.is_rally);
     }},
    {u"KvK",
     [](const FieldAttack &a) -> QVariant {
         return int(a.is_kvk);
     }},
    {u"My KP",
     [](const FieldAttack &a) -> QVariant {
         return a.my_kill_points;
     }},
    {u"Enemy KP",
     [](const FieldAttack &a) -> QVariant {
         return a.enemy_kill_points;
     }},
    {u"KP ratio", ratio},
    {u"My hero 1",
     [](const FieldAttack &a) -> QVariant {
         return a.my_heroes[0];
     }},
    {u"My hero 2",
     [](const FieldAttack &a) -> QVariant {
         return a.my_heroes[1];
     }},
    {u"Enemy hero 1",
     [](const FieldAttack &a) -> QVariant {
         return a.enemy_heroes[0];
     }},
    {u"Enemy hero 2",
     [](const FieldAttack &a) -> QVariant {
         return a.enemy_heroes[1];
     }},
};

} // namespace

std::unique_ptr<QAbstractItemModel> attack_table(const std::vector<FieldAttack> &attacks,
                                                 const std::vector<std::size_t> &which)
{
    QStringList titles;
    for (const ExportColumn &column : columns)
        titles << QString::fromUtf16(column.title);
    std::vector<ItemRow> rows;
    rows.reserve(which.size());
    for (const std::size_t index : which) {
        ItemRow row;
        for (const ExportColumn &column : columns)
            row.cells.push_back(left_cell({}, column.value(attacks.at(index))));
        rows.push_back(std::move(row));
    }
    auto table = std::make_unique<ItemRowModel>(titles, QString());
    table->set_rows(std::move(rows));
    return table;
}

} // namespace tally::ui
