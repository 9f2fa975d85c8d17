#pragma once

#include <QByteArrayList>

namespace tally::app {

/// Icons of items and heroes are WebP pictures, which Qt reads by a plugin that its base lacks.
/// Says so in the log if `formats`, the names of what Qt can read, has none.
void warn_without_webp(const QByteArrayList &formats);

} // namespace tally::app
