#pragma once

#include <QPixmap>

namespace tally::ui {

/// Pixmaps are painted in device-independent pixels with as many physical ones as the sharpest
/// screen shows of them: a picture of one ratio is right on every screen.
qreal sharpest_pixel_ratio();

/// A transparent pixmap, null if a side is below 1.
QPixmap sharp_pixmap(int width, int height);

/// `picture` fitted into a square of `side` device-independent pixels, its proportions kept.
QPixmap fitted_picture(const QPixmap &picture, int side);

} // namespace tally::ui
