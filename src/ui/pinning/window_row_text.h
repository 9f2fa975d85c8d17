#pragma once

#include "platform/host/game_windows.h"

#include <QString>

namespace tally::ui {

/// A classification of `platform::classify_exe_path` as coloured rich text.
QString classification_html(const QString &classification);

/// The path as a row shows it: the last 87 characters of one of 90 or more.
QString shown_path(const QString &exe_path);

/// What a row of the selector says about a window, as rich text.
QString window_row_html(const platform::GameWindowInfo &window);

/// The same as one plain line, for those who hear it.
QString window_row_spoken(const platform::GameWindowInfo &window);

} // namespace tally::ui
