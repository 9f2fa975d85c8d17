#include "ui/trials/baulur_kills_dialog.h"

#include "data/store/tally_db.h"
#include "ui/items/item_row_table.h"
#include "ui/parts/value_texts.h"
#include "ui/trials/trial_texts.h"

#include <QLabel>

#include <algorithm>
#include <iterator>

namespace tally::ui {

BaulurKillsDialog::BaulurKillsDialog(queries::StoreQueries *queries, const QStringList &files,
                                     const QString &player, const QString &icon_dir,
                                     QWidget *parent)
    : DetailsDialog(QStringLiteral("Player kills — %1").arg(name_text(player)), {940, 520}, 10, 8,
                    parent),
      player_(player), header_(new QLabel),
      view_(new ItemRowTable(
          {.name = QStringLiteral("Kills"),
           .export_name = QStringLiteral("boss-run-kills"),
           .headers = {QStringLiteral("Time"), QStringLiteral("Boss"), QStringLiteral("Tile"),
                       QStringLiteral("Damage%"), QStringLiteral("Loot")}},
          icon_dir)),
      kills_(*queries, this)
{
    header_->setTextFormat(Qt::RichText);
    header_->setText(QStringLiteral("<b>%1</b>").arg(name_text(player_).toHtmlEscaped()));
    add(header_);
    add(view_, 1);
    kills_.ask(
        [files, player](const data::TallyDb &db, const queries::IsOutdated &) {
            return db.player_kills(files, player);
        },
        [this](const std::vector<data::PlayerKill> &kills) { show_kills(kills); });
}

void BaulurKillsDialog::show_kills(const std::vector<data::PlayerKill> &kills)
{
    header_->setText(QStringLiteral("<b>%1</b>  ·  %2 kills in this session")
                         .arg(name_text(player_).toHtmlEscaped(), QString::number(kills.size())));
    std::vector<ItemRow> rows;
    std::transform(kills.begin(), kills.end(), std::back_inserter(rows), kill_row);
    view_->set_rows(std::move(rows));
}

} // namespace tally::ui
