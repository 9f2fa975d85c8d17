#pragma once

#include "data/mail/loot_entry.h"
#include "data/store/trial_records.h"

#include <QString>
#include <QVariant>

#include <optional>
#include <vector>

namespace tally::ui {

/// What a table of reports shows in one cell of a row.
struct RowCell {
    QString text;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    QVariant exported = {}; ///< the bare value for other programs; without it they get the text
    QVariant value = {};    ///< under `Qt::UserRole`

    bool operator==(const RowCell &) const = default;
};

/// One report in a table. Its loot stands in the column behind the cells.
struct ItemRow {
    QString key; ///< tells the row apart from all others of its table
    std::vector<RowCell> cells;
    std::vector<data::LootStripItem> loot = {};

    bool operator==(const ItemRow &) const = default;
};

RowCell left_cell(const QString &text, const QVariant &exported = {});
RowCell centred_cell(const QString &text, const QVariant &exported = {});
RowCell right_cell(const QString &text, const QVariant &exported = {});

/// "(12, 34)", or an em dash without both coordinates.
QString tile_text(std::optional<int> x, std::optional<int> y);

/// The numbers as a strip of tiles shows them: cut off, 0 where there is none.
std::vector<data::LootStripItem> strip_items(const std::vector<data::LootEntry> &loot);

/// "name x amount" for each item, joined by `separator`: what a strip says in words.
QString loot_words(const std::vector<data::LootStripItem> &loot, const QString &separator);

} // namespace tally::ui
