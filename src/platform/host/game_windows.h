#pragma once

#include "platform/host/host.h"

#include <QList>
#include <QString>

namespace tally::platform {

/// What the title of every window of the game holds.
inline constexpr char16_t game_title[] = u"Rise of Kingdoms";

/// One visible window whose title matched.
struct GameWindowInfo {
    WindowHandle hwnd = no_window;
    std::uint32_t pid = 0; ///< 0 if the platform gives none
    QString title;         ///< as the platform gives it
    QString exe_path;      ///< full path of the process image, empty when it can't be queried
};

/// All visible windows whose title holds `title` in any letter case, top of the Z order first.
QList<GameWindowInfo> find_game_windows(Host &host, const QString &title);

/// The windows of the game.
QList<GameWindowInfo> find_game_windows(Host &host);

/// The window to use: the first whose image path equals `target_exe` without regard to case, else
/// the first of all. \return null for an empty list. The pointer is into `windows`.
const GameWindowInfo *pick_game_window(const QList<GameWindowInfo> &windows,
                                       const QString &target_exe);

/// Tells a sandbox or emulator by the path of its image: "unknown" for an empty path,
/// "sandbox: %1" with the product's name, or "native".
QString classify_exe_path(const QString &path);

} // namespace tally::platform
