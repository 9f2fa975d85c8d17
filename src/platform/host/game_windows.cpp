#include "platform/host/game_windows.h"

namespace tally::platform {

namespace {

struct SandboxSign {
    QLatin1StringView needle;
    QLatin1StringView label;
};

constexpr SandboxSign sandbox_signs[] = {
    {QLatin1StringView{"sandboxie"}, QLatin1StringView{"Sandboxie"}},
    {QLatin1StringView{"sandbox\\"}, QLatin1StringView{"Sandbox"}},
    {QLatin1StringView{"bluestacks"}, QLatin1StringView{"BlueStacks"}},
    {QLatin1StringView{"nox"}, QLatin1StringView{"NoxPlayer"}},
    {QLatin1StringView{"ldplayer"}, QLatin1StringView{"LDPlayer"}},
    {QLatin1StringView{"memuplayer"}, QLatin1StringView{"MEmu"}},
    {QLatin1StringView{"gameloop"}, QLatin1StringView{"GameLoop"}},
    {QLatin1StringView{"mumu"}, QLatin1StringView{"MuMu"}},
    {QLatin1StringView{"genymotion"}, QLatin1StringView{"Genymotion"}},
};

} // namespace

QList<GameWindowInfo> find_game_windows(Host &host, const QString &title)
{
    const QString wanted = title.toLower();
    QList<GameWindowInfo> found;
    for (const WindowHandle window : host.top_level_windows()) {
        if (!host.window_visible(window))
            continue;
        const QString text = QString::fromStdU16String(host.window_title(window));
        if (text.isEmpty() || !text.toLower().contains(wanted))
            continue;
        const std::uint32_t pid = host.window_process_id(window);
        const std::u16string path = pid == 0 ? std::u16string{} : host.image_path(pid);
        found.append({window, pid, text, QString::fromStdU16String(path)});
    }
    return found;
}

QList<GameWindowInfo> find_game_windows(Host &host)
{
    return find_game_windows(host, QString::fromUtf16(game_title));
}

const GameWindowInfo *pick_game_window(const QList<GameWindowInfo> &windows,
                                       const QString &target_exe)
{
    if (windows.isEmpty())
        return nullptr;
    if (!target_exe.isEmpty()) {
        for (const GameWindowInfo &window : windows) {
            if (window.exe_path.compare(target_exe, Qt::CaseInsensitive) == 0)
                return &window;
        }
    }
    return &windows.first();
}

QString classify_exe_path(const QString &path)
{
    if (path.isEmpty())
        return QStringLiteral("unknown");
    const QString lower = path.toLower();
    for (const SandboxSign &sign : sandbox_signs) {
        if (lower.contains(sign.needle))
            return QStringLiteral("sandbox: %1").arg(sign.label);
    }
    return QStringLiteral("native");
}

} // namespace tally::platform
