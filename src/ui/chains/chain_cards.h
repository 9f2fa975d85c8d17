#pragma once

#include "data/store/chain_records.h"
#include "ui/parts/card_title.h"

#include <QString>

#include <array>

namespace tally::ui {

/// The cards of the summary in their order.
inline constexpr std::array chain_card_row = {
    CardTitle{QLatin1StringView("chains"), u"Chains"},
    CardTitle{QLatin1StringView("rounds"), u"Rounds"},
    CardTitle{QLatin1StringView("wins"), u"Won"},
    CardTitle{QLatin1StringView("escapes"), u"Escapes"},
    CardTitle{QLatin1StringView("kill"), u"Kill"},
    CardTitle{QLatin1StringView("barbs_per_ap"), u"Barbs per AP use"},
    CardTitle{QLatin1StringView("active"), u"Fight time"},
    CardTitle{QLatin1StringView("honor"), u"Honor"},
    CardTitle{QLatin1StringView("avg_chain"), u"Avg chain time"},
    CardTitle{QLatin1StringView("avg_round"), u"Avg round time"},
    CardTitle{QLatin1StringView("rounds_per_hour"), u"Rounds/hour"},
    CardTitle{QLatin1StringView("bonus_ap"), u"BONUS AP"},
    CardTitle{QLatin1StringView("tactical"), u"Tactical"},
};

/// What the cards show, in the order of `chain_card_row`.
using ChainCardTexts = std::array<QString, chain_card_row.size()>;
ChainCardTexts chain_cards(const data::ChainSummary &summary);

} // namespace tally::ui
