#pragma once

#include "data/store/field_records.h"
#include "ui/parts/card_title.h"

#include <QString>

#include <array>

namespace tally::ui {

/// The cards of the summary in their order.
inline constexpr std::array field_card_row = {
    CardTitle{QLatin1StringView("fights"), u"Fights"},
    CardTitle{QLatin1StringView("attacks"), u"Attacks"},
    CardTitle{QLatin1StringView("enemies"), u"Unique enemies"},
    CardTitle{QLatin1StringView("kvk"), u"KvK fights"},
    CardTitle{QLatin1StringView("win_rate"), u"Win rate"},
    CardTitle{QLatin1StringView("kp_ratio"), u"KP ratio"},
    CardTitle{QLatin1StringView("my_kp"), u"My KP"},
    CardTitle{QLatin1StringView("enemy_kp"), u"Enemy KP"},
};

/// What the cards show, in the order of `field_card_row`.
using FieldCardTexts = std::array<QString, field_card_row.size()>;
FieldCardTexts field_cards(const data::FieldSummary &summary);

} // namespace tally::ui
