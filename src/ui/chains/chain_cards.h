#pragma once

#include "data/store/chain_records.h"

#include <QLatin1StringView>
#include <QString>

#include <array>

namespace tally::ui {

struct ChainCard {
    QLatin1StringView key;
    const char16_t *title;
};

/// The cards of the summary in their order.
inline constexpr std::array chain_card_row = {
    ChainCard{QLatin1StringView("chains"), u"Chains"},
    ChainCard{QLatin1StringView("rounds"), u"Rounds"},
    ChainCard{QLatin1StringView("wins"), u"Won"},
    ChainCard{QLatin1StringView("escapes"), u"Escapes"},
    ChainCard{QLatin1StringView("kill"), u"Kill"},
    ChainCard{QLatin1StringView("barbs_per_ap"), u"Barbs per AP use"},
    ChainCard{QLatin1StringView("active"), u"Fight time"},
    ChainCard{QLatin1StringView("honor"), u"Honor"},
    ChainCard{QLatin1StringView("avg_chain"), u"Avg chain time"},
    ChainCard{QLatin1StringView("avg_round"), u"Avg round time"},
    ChainCard{QLatin1StringView("rounds_per_hour"), u"Rounds/hour"},
    ChainCard{QLatin1StringView("bonus_ap"), u"BONUS AP"},
    ChainCard{QLatin1StringView("tactical"), u"Tactical"},
};

/// What the cards show, in the order of `chain_card_row`.
using ChainCardTexts = std::array<QString, chain_card_row.size()>;
ChainCardTexts chain_cards(const data::ChainSummary &summary);

} // namespace tally::ui
