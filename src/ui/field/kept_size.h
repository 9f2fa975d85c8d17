#pragma once

#include "settings/setting.h"

#include <QSize>

namespace tally {
class Settings;
}

namespace tally::ui {

/// The size that a window was left with, in pixels; `otherwise` if none that makes sense is stored.
QSize kept_size(const Settings &settings, const Setting<QString> &setting, QSize otherwise);
void keep_size(Settings &settings, const Setting<QString> &setting, QSize size);

} // namespace tally::ui
