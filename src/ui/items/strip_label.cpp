#include "ui/items/strip_label.h"

#include "ui/items/item_rows.h"
#include "ui/items/loot_strip.h"
#include "ui/parts/plain_label.h"

#include <QLabel>

namespace tally::ui {

QLabel *new_strip_label(const std::vector<data::LootStripItem> &loot, const QString &icon_dir,
                        int tile_size)
{
    constexpr int gap = 3;
    QLabel *label = plain_label({});
    label->setPixmap(render_loot_strip(loot, icon_dir, tile_size, gap));
    label->setToolTip(loot_words(loot, QStringLiteral("\n")));
    label->setAccessibleName(loot_words(loot, QStringLiteral("; ")));
    return label;
}

} // namespace tally::ui
