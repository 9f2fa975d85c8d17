#pragma once

#include "data/store/chain_records.h"
#include "ui/items/picture_watch.h"

#include <QScrollArea>

#include <vector>

namespace tally::ui {

class LootCard;

/// Sums of loot, a card each, in as many rows as they need.
class LootCards : public QScrollArea {
    Q_OBJECT

public:
    explicit LootCards(QString icon_dir, QWidget *parent = nullptr);

    /// \param stats in the order of the cards
    void show_stats(const std::vector<data::LootStat> &stats);

private:
    QString icon_dir_;
    std::vector<LootCard *> cards_;
    std::vector<data::LootStat> shown_;
    PictureWatch pictures_;
};

} // namespace tally::ui
