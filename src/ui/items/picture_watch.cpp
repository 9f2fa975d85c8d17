#include "ui/items/picture_watch.h"

#include "ui/items/picture_caches.h"
#include "ui/parts/sharp_pixmap.h"

#include <utility>

namespace tally::ui {

bool PictureWatch::take_news()
{
    const std::pair now(picture_caches().news, sharpest_pixel_ratio());
    return std::exchange(seen_, now) != now;
}

} // namespace tally::ui
