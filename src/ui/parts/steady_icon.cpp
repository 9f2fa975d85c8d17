#include "ui/parts/steady_icon.h"

namespace tally::ui {

QIcon steady_icon(const QPixmap &picture)
{
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected);
    return icon;
}

} // namespace tally::ui
