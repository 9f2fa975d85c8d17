#pragma once

#include "data/master/master_cache.h"
#include "data/store/chain_records.h"
#include "ui/chains/chain_filter.h"
#include "ui/overlay/overlay_mode.h"

#include <QHash>
#include <QString>

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace tally::ui {

/// A material of the overlay.
struct OverlayMaterial {
    const char16_t *label;
    const char16_t *name; ///< its unit and its icon; the former in any letter case

    /// Of its value.
    QString key() const;
};

inline constexpr std::array<OverlayMaterial, 4> overlay_materials{{
    {u"Leather", u"Leather"},
    {u"Iron Ore", u"Iron Ore"},
    {u"Animal Bone", u"Animal Bones"},
    {u"Ebony", u"Ebony"},
}};

/// What the reference tables know of an item.
using ItemLookUp =
    std::function<data::ItemInfo(std::optional<double> type, std::optional<double> subtype)>;

/// The texts of all values by their keys: "crystals", "gems", "universal", "training", "healing"
/// (days), one for each material, "chains", "rounds", "wins", "avg" (kills a chain that cost action
/// points), "honor" and "kills".
/// \param loot rows without a name are looked up once more; what is no unit of the overlay's is
///        left out
QHash<QString, QString> overlay_figures(OverlayMode mode, const data::ChainSummary &summary,
                                        const std::vector<data::LootStat> &loot,
                                        const ItemLookUp &look_up);

/// What the figures are of: the period in UTC with its last minute, and the page that is shown.
QString overlay_filter_text(const ChainFilter &filter, const QString &tab_title);

} // namespace tally::ui
