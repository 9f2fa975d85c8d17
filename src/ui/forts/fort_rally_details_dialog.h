#pragma once

#include "data/store/trial_records.h"
#include "ui/parts/details_dialog.h"
#include "ui/parts/view_asker.h"

#include <optional>

class QLabel;

namespace tally::ui {

class ItemRowTable;

/// One fort report, and beside it the battle that earned it round by round.
class FortRallyDetailsDialog : public DetailsDialog {
    Q_OBJECT

public:
    /// \param queries outlives the dialog
    FortRallyDetailsDialog(queries::StoreQueries *queries, const data::FortRow &report,
                           const QString &icon_dir, QWidget *parent);

private:
    void show_battle(const std::optional<data::FortBattle> &battle);

    QLabel *head_label_;
    QLabel *loot_label_;
    QLabel *battle_label_;
    ItemRowTable *rounds_view_;
    ViewAsker battle_;
};

} // namespace tally::ui
