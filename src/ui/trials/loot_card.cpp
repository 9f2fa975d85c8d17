#include "ui/trials/loot_card.h"

#include "ui/items/item_pictures.h"
#include "ui/parts/plain_label.h"
#include "ui/trials/trial_texts.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tally::ui {
namespace {

constexpr int tile_size = 30;

} // namespace

LootCard::LootCard(QWidget *parent)
    : QFrame(parent), tile_(new QLabel),
      name_(plain_label({}, QStringLiteral("font-size: 10pt; font-weight: 600;"))),
      amount_(plain_label({}, QStringLiteral("font-size: 9pt; color: #888;")))
{
    setFrameShape(QFrame::NoFrame);
    tile_->setFixedSize(tile_size, tile_size);
    auto *lines = new QVBoxLayout;
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    lines->addWidget(name_);
    lines->addWidget(amount_);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 8, 2);
    row->setSpacing(6);
    row->addWidget(tile_);
    row->addLayout(lines);
}

void LootCard::show_stat(const data::LootStat &stat, const QString &icon_dir)
{
    const LootCardTexts texts = loot_card_texts(stat);
    tile_->setPixmap(item_tile({.icon = stat.icon,
                                .unit = stat.unit,
                                .name = stat.name,
                                .unit_value = stat.unit_value,
                                .size = tile_size},
                               icon_dir));
    name_->setText(texts.name);
    amount_->setText(texts.amount);
    setAccessibleName(QStringLiteral("%1: %2").arg(texts.name, texts.amount));
}

} // namespace tally::ui
