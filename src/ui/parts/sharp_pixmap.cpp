#include "ui/parts/sharp_pixmap.h"

#include <QGuiApplication>

namespace tally::ui {

qreal sharpest_pixel_ratio()
{
    return qGuiApp->devicePixelRatio();
}

QPixmap sharp_pixmap(int width, int height)
{
    if (width < 1 || height < 1)
        return {};
    const qreal ratio = sharpest_pixel_ratio();
    QPixmap pixmap((QSizeF(width, height) * ratio).toSize());
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

QPixmap fitted_picture(const QPixmap &picture, int side)
{
    const qreal ratio = sharpest_pixel_ratio();
    QPixmap fitted = picture.scaled((QSizeF(side, side) * ratio).toSize(), Qt::KeepAspectRatio,
                                    Qt::SmoothTransformation);
    fitted.setDevicePixelRatio(ratio);
    return fitted;
}

} // namespace tally::ui
