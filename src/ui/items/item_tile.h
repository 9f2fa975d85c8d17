#pragma once

#include "ui/items/item_look.h"

#include <QPixmap>
#include <QString>

namespace tally::ui {

/// The picture of one item: a rounded square in the colour of its tier with the icon in it.
/// \param unit_text upper left corner
/// \param quantity_text lower right corner
/// \param size side in device-independent pixels
/// \param fallback stands in the middle where there is no icon
QPixmap render_item_tile(const QPixmap &icon, const QString &unit_text,
                         const QString &quantity_text, const ItemBadge &badge, int size,
                         const QString &fallback);

/// The tile without the texts in its corners, and those texts on top of it.
QPixmap render_bare_tile(const QPixmap &icon, const ItemBadge &badge, int size,
                         const QString &fallback);
QPixmap with_texts(QPixmap tile, const QString &unit_text, const QString &quantity_text, int size);

} // namespace tally::ui
