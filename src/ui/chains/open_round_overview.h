#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace tally::queries {
class Asker;
class StoreQueries;
} // namespace tally::queries

namespace tally::ui {

struct HeroPairChoice;

/// Opens a window on all rounds of a pair, or a box that says why there is none.
/// \param asker asks for the chains; until they have come, another pair takes the place of this one
/// \param queries for the window
void open_round_overview(queries::Asker &asker, queries::StoreQueries &queries,
                         const HeroPairChoice &pair, double npc_btype,
                         std::optional<double> player, const QString &icon_dir, QWidget *parent);

} // namespace tally::ui
