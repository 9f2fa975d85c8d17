#pragma once

#include <QIcon>
#include <QString>

#include <optional>

namespace tally::ui {

/// The picture file of a hero, or that of the unknown hero; nothing if neither is there.
/// \param icon file name or address whose base name is the key
std::optional<QString> hero_icon_path(const QString &icon, const QString &icon_dir);

/// Two heroes side by side; null if neither has a picture.
/// \param size side of one picture, and \param gap between the two, in pixels
QIcon render_hero_pair(const QString &icon_1, const QString &icon_2, const QString &icon_dir,
                       int size, int gap);

} // namespace tally::ui
