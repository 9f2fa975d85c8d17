#include "ui/chains/reward_strip.h"

#include "ui/chains/round_look.h"
#include "ui/items/item_look.h"
#include "ui/items/item_pictures.h"

#include <QLabel>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr int least_spacing = 2;

} // namespace

RewardStrip::RewardStrip(QString icon_dir, QWidget *parent)
    : QWidget(parent), icon_dir_(std::move(icon_dir))
{}

int RewardStrip::per_line(int width)
{
    return std::max((width + least_spacing) / (tile_size + least_spacing), 1);
}

int RewardStrip::height_for(size_t rewards, int width)
{
    const auto count = static_cast<int>(std::min<size_t>(rewards, 100'000));
    const int a_line = per_line(width);
    const int lines = (count + a_line - 1) / a_line;
    return std::max(lines * (tile_size + spacing) - spacing, 0);
}

void RewardStrip::show_rewards(const std::vector<data::LootEntry> &rewards)
{
    shown_ = rewards.size();
    for (size_t i = 0; i < rewards.size(); ++i) {
        const data::LootEntry &item = rewards[i];
        const QString quantity = count_text(item.value);
        const ItemTile shown{.icon = item.icon,
                             .unit = item.unit,
                             .name = item.name,
                             .unit_value = item.unit_value,
                             .unit_text = unit_label(item),
                             .quantity_text = quantity,
                             .size = tile_size,
                             .fallback = {}};
        QLabel *label = tile(i);
        label->setPixmap(item_tile(shown, icon_dir_));
        label->setToolTip(reward_tool_tip(item));
        label->setAccessibleName(
            item.name.isEmpty() ? quantity : QStringLiteral("%1, %2").arg(item.name, quantity));
        label->show();
    }
    for (size_t i = rewards.size(); i < tiles_.size(); ++i)
        tiles_[i]->hide();
    place();
}

QLabel *RewardStrip::tile(size_t index)
{
    while (tiles_.size() <= index) {
        auto *label = new QLabel(this);
        label->setFixedSize(tile_size, tile_size);
        tiles_.push_back(label);
    }
    return tiles_[index];
}

void RewardStrip::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    place();
}

void RewardStrip::place()
{
    const int a_line = per_line(width());
    const bool is_tight = a_line * (tile_size + spacing) - spacing > width();
    const int step_x = tile_size + (is_tight ? least_spacing : spacing);
    const int top = std::max((height() - height_for(shown_, width())) / 2, 0);
    for (size_t i = 0; i < shown_; ++i) {
        const int place = static_cast<int>(i);
        tiles_[i]->move(place % a_line * step_x, top + place / a_line * (tile_size + spacing));
    }
}

} // namespace tally::ui
