#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>
#include <vector>

namespace tally::ui {

enum TreeColumn : std::size_t {
    report_column,
    time_column,
    result_column,
    enemy_column,
    alliance_column,
    attacks_column,
    rally_column,
    kvk_column,
    my_points_column,
    enemy_points_column,
    ratio_column,
    my_heroes_column,
    enemy_heroes_column,
    tree_column_count,
};

struct TreeColumnLook {
    const char16_t *title;
    int width; ///< at first, in pixels
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
};

inline constexpr Qt::Alignment number_alignment = Qt::AlignRight | Qt::AlignVCenter;

/// By `TreeColumn`.
inline constexpr std::array<TreeColumnLook, tree_column_count> tree_columns = {{
    {u"Tour / Report", 280},
    {u"Time", 130},
    {u"Result", 60},
    {u"Enemy", 170},
    {u"Alliance", 70},
    {u"Attacks", 55, number_alignment},
    {u"Rally", 45, Qt::AlignCenter},
    {u"KvK", 45, Qt::AlignCenter},
    {u"My KP", 90, number_alignment},
    {u"Enemy KP", 90, number_alignment},
    {u"KP ratio", 75, number_alignment},
    {u"My heroes", 180},
    {u"Enemy heroes", 180},
}};

/// How the columns of a table stand.
struct ColumnArrangement {
    std::vector<int> order;  ///< columns from left to right
    std::vector<int> widths; ///< by column, in pixels

    bool operator==(const ColumnArrangement &) const = default;
};

/// One line for the settings: "column:width" from left to right.
QString arrangement_text(const ColumnArrangement &arrangement);
/// Nothing for a text that is none of so many columns: somebody may have edited it by hand. The
/// first column, which has the tree's branches, stays the first.
std::optional<ColumnArrangement> arrangement_in(QStringView text, int columns);

} // namespace tally::ui
