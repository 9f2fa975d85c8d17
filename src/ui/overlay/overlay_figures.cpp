#include "ui/overlay/overlay_figures.h"

#include "data/store/sql_values.h"
#include "ui/parts/format_count.h"
#include "ui/parts/utc_time.h"

#include <QtNumeric>

#include <algorithm>
#include <limits>

namespace tally::ui {
namespace {

constexpr double minutes_a_day = 1440.0;

/// The better the grade, the more pieces of the normal one it is worth. In the order in which a
/// name is searched for them.
struct Grade {
    const char16_t *word;
    double legendaries;
};

constexpr std::array<Grade, 5> grades{{{u"LEGENDARY", 1.0},
                                       {u"ELITE", 1.0 / 4},
                                       {u"EPIC", 1.0 / 16},
                                       {u"ADVANCED", 1.0 / 64},
                                       {u"", 1.0 / 256}}};
constexpr std::size_t advanced = 3;
constexpr std::size_t normal = 4;

struct Speedup {
    int subtype;
    const char16_t *key;
};

constexpr std::array speedups{Speedup{34, u"universal"}, Speedup{71, u"training"},
                              Speedup{72, u"training"}, Speedup{92, u"healing"}};

/// Pieces by grade.
using Pieces = std::array<qint64, grades.size()>;

struct LootSums {
    qint64 crystals = 0;
    qint64 gems = 0;
    QHash<QString, qint64> minutes; ///< of speedups, by key
    std::array<Pieces, overlay_materials.size()> materials{};
};

void add(qint64 &sum, qint64 value)
{
    if (qAddOverflow(sum, value, &sum))
        sum = value < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

std::size_t grade_of(const QString &name)
{
    const QString upper = name.toUpper();
    const auto found = std::ranges::find_if(
        grades, [&upper](const Grade &grade) { return upper.contains(QStringView(grade.word)); });
    return static_cast<std::size_t>(found - grades.begin());
}

void add_speedup(LootSums &sums, const data::LootStat &row)
{
    const std::optional<int> subtype = data::to_int(row.item_subtype);
    const auto found = std::ranges::find(
        speedups, subtype, [](const Speedup &speedup) { return std::optional(speedup.subtype); });
    if (found != speedups.end())
        add(sums.minutes[QString::fromUtf16(found->key)], row.total_value);
}

void add_row(LootSums &sums, const data::LootStat &row)
{
    if (row.unit.compare(u"crystals", Qt::CaseInsensitive) == 0)
        return add(sums.crystals, row.pieces);
    if (row.unit.compare(u"gems", Qt::CaseInsensitive) == 0)
        return add(sums.gems, row.total_value);
    if (row.unit.compare(u"min", Qt::CaseInsensitive) == 0)
        return add_speedup(sums, row);
    for (std::size_t i = 0; i < overlay_materials.size(); ++i) {
        if (row.unit.compare(QStringView(overlay_materials[i].name), Qt::CaseInsensitive) == 0)
            add(sums.materials[i][grade_of(row.name)], row.pieces);
    }
}

data::LootStat completed(data::LootStat row, const ItemLookUp &look_up)
{
    const data::ItemInfo item = look_up(row.item_type, row.item_subtype);
    if (item.name.isEmpty())
        return row;
    row.name = item.name;
    row.unit = item.unit;
    row.icon = item.icon;
    row.unit_value = item.unit_value;
    row.total_value = data::saturated<qint64>(row.pieces * row.unit_value + 0.5);
    return row;
}

LootSums sums_of(const std::vector<data::LootStat> &loot, const ItemLookUp &look_up)
{
    LootSums sums;
    for (const data::LootStat &row : loot)
        add_row(sums, row.name.isEmpty() ? completed(row, look_up) : row);
    return sums;
}

QString decimals(double value, int places)
{
    return QString::number(value, 'f', places);
}

QString material_text(OverlayMode mode, const Pieces &pieces)
{
    double legendaries = 0.0;
    for (std::size_t grade = 0; grade < grades.size(); ++grade)
        legendaries += static_cast<double>(pieces[grade]) * grades[grade].legendaries;
    const QString equivalent = decimals(legendaries, 3);
    if (mode != OverlayMode::Full)
        return equivalent;
    return QStringLiteral("N:%1 | A:%2 (L: %3)")
        .arg(format_count(pieces[normal]), format_count(pieces[advanced]), equivalent);
}

QString wins_text(const data::ChainSummary &summary)
{
    const double share =
        summary.battles == 0 ? 0.0 : static_cast<double>(summary.engaged) / summary.battles;
    return QStringLiteral("%1 (%2%)").arg(format_count(summary.engaged), decimals(share * 100, 1));
}

QString utc_minute(double time)
{
    return utc_moment_text(time, QStringLiteral("yyyy-MM-dd HH:mm"));
}

} // namespace

QString OverlayMaterial::key() const
{
    return QStringLiteral("mat_") + QString::fromUtf16(name);
}

QHash<QString, QString> overlay_figures(OverlayMode mode, const data::ChainSummary &summary,
                                        const std::vector<data::LootStat> &loot,
                                        const ItemLookUp &look_up)
{
    const LootSums sums = sums_of(loot, look_up);
    QHash<QString, QString> texts{
        {QStringLiteral("crystals"), format_count(sums.crystals)},
        {QStringLiteral("gems"), format_count(sums.gems)},
        {QStringLiteral("chains"), format_count(summary.files)},
        {QStringLiteral("rounds"), format_count(summary.battles)},
        {QStringLiteral("honor"), format_count(summary.honor)},
        {QStringLiteral("kills"), format_count(summary.kills)},
        {QStringLiteral("wins"), wins_text(summary)},
        {QStringLiteral("avg"),
         decimals(summary.chains_ap_only > 0
                      ? static_cast<double>(summary.kills) / summary.chains_ap_only
                      : 0.0,
                  2)},
    };
    for (const Speedup &speedup : speedups) {
        const QString key = QString::fromUtf16(speedup.key);
        texts[key] = QStringLiteral("%1 d").arg(
            decimals(static_cast<double>(sums.minutes.value(key)) / minutes_a_day, 3));
    }
    for (std::size_t i = 0; i < overlay_materials.size(); ++i)
        texts[overlay_materials[i].key()] = material_text(mode, sums.materials[i]);
    return texts;
}

QString overlay_filter_text(const ChainFilter &filter, const QString &tab_title)
{
    QString range;
    if (filter.from)
        range = utc_minute(*filter.from);
    if (filter.to)
        range += QStringLiteral(" → ") + utc_minute(*filter.to - 60);
    if (!filter.from && !filter.to)
        range = QStringLiteral("all time");
    const QString text = QStringLiteral("Filter: ") + range;
    return tab_title.isEmpty() ? text : text + QStringLiteral("  ·  ") + tab_title;
}

} // namespace tally::ui
