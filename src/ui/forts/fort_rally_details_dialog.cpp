#include "ui/forts/fort_rally_details_dialog.h"

#include "data/store/tally_db.h"
#include "ui/forts/fort_texts.h"
#include "ui/items/item_row_table.h"
#include "ui/items/strip_label.h"

#include <QLabel>

#include <algorithm>
#include <iterator>

namespace tally::ui {
namespace {

QLabel *rich_label(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::RichText);
    label->setWordWrap(true);
    return label;
}

} // namespace

FortRallyDetailsDialog::FortRallyDetailsDialog(queries::StoreQueries *queries,
                                               const data::FortRow &report, const QString &icon_dir,
                                               QWidget *parent)
    : DetailsDialog(QStringLiteral("Fort Rally — details"), {1000, 700}, 10, 10, parent),
      head_label_(rich_label(fort_headline(report))),
      loot_label_(new_strip_label(strip_items(report.loot), icon_dir, 72)),
      battle_label_(rich_label({})),
      rounds_view_(
          new ItemRowTable({.name = QStringLiteral("Rounds"),
                            .export_name = QStringLiteral("fort-rounds"),
                            .headers = {QStringLiteral("Round"), QStringLiteral("Target"),
                                        QStringLiteral("Damage dealt"),
                                        QStringLiteral("Damage taken"), QStringLiteral("Loot")}},
                           icon_dir)),
      battle_(*queries, this)
{
    if (report.loot.empty())
        loot_label_->setText(QStringLiteral("(no loot recorded)"));
    loot_label_->setMinimumHeight(88);
    loot_label_->setMinimumWidth(1); // a strip wider than the dialog does not widen it
    add(head_label_);
    add(loot_label_);
    add(battle_label_);
    add(rounds_view_, 1);
    battle_.ask(
        [file_name = report.file_name](const data::TallyDb &db, const queries::IsOutdated &) {
            return db.fort_battle(file_name);
        },
        [this](const std::optional<data::FortBattle> &battle) { show_battle(battle); });
}

void FortRallyDetailsDialog::show_battle(const std::optional<data::FortBattle> &battle)
{
    battle_label_->setText(battle_headline(battle));
    std::vector<ItemRow> rows;
    if (battle)
        std::transform(battle->rounds.begin(), battle->rounds.end(), std::back_inserter(rows),
                       battle_round_row);
    rounds_view_->set_rows(std::move(rows));
}

} // namespace tally::ui
