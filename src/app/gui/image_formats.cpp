#include "app/gui/image_formats.h"

#include "ui/parts/ui_log.h"

namespace tally::app {

void warn_without_webp(const QByteArrayList &formats)
{
    if (!formats.contains("webp"))
        qCWarning(ui::log_ui) << "Qt lacks its WebP plugin: items and heroes show without icons";
}

} // namespace tally::app
