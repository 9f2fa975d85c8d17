#include "ui/trials/loot_cards.h"

#include "ui/parts/flow_layout.h"
#include "ui/trials/loot_card.h"

#include <utility>

namespace tally::ui {

LootCards::LootCards(QString icon_dir, QWidget *parent)
    : QScrollArea(parent), icon_dir_(std::move(icon_dir))
{
    setAccessibleName(QStringLiteral("Total loot"));
    setFixedHeight(85);
    setFrameShape(QFrame::StyledPanel);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    auto *cards = new QWidget;
    new FlowLayout(cards, 4, 6, 6);
    setWidget(cards);
}

void LootCards::show_stats(const std::vector<data::LootStat> &stats)
{
    const bool has_new_pictures = pictures_.take_news();
    if (stats == shown_ && !has_new_pictures)
        return;
    shown_ = stats;
    while (cards_.size() > stats.size()) {
        delete cards_.back();
        cards_.pop_back();
    }
    for (std::size_t i = 0; i < cards_.size(); ++i)
        cards_[i]->show_stat(stats[i], icon_dir_);
    while (cards_.size() < stats.size()) {
        auto *card = new LootCard;
        card->show_stat(stats[cards_.size()], icon_dir_); // else it has no width for a frame
        widget()->layout()->addWidget(card);
        card->show(); // the layout would do so a frame later
        cards_.push_back(card);
    }
}

} // namespace tally::ui
