#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

struct HeroPairChoice;

/// Opens a window on all rounds of a pair, or a box that says why there is none.
void open_round_overview(const data::TallyDb &db, const HeroPairChoice &pair, double npc_btype,
                         std::optional<double> player, const QString &icon_dir, QWidget *parent);

} // namespace tally::ui
