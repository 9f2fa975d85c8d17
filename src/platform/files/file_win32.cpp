#include "platform/files/file_win32.h"

#include <QDir>
#include <QFileInfo>

namespace tally::platform {

std::wstring win32_path(const QString &path)
{
    const QString native = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    const QString prefix = QStringLiteral("\\\\?\\");
    if (native.startsWith(prefix))
        return native.toStdWString();
    if (native.startsWith(u"\\\\"))
        return (prefix + QStringLiteral("UNC") + native.sliced(1)).toStdWString();
    return (prefix + native).toStdWString();
}

Win32File open_win32(const QString &path, DWORD access, DWORD flags)
{
    HANDLE file = CreateFileW(win32_path(path).c_str(), access,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, flags, nullptr);
    return Win32File(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

qint64 ticks_of(const FILETIME &time)
{
    // The system counts from the year 1601.
    constexpr qint64 unix_epoch = 116'444'736'000'000'000;
    return static_cast<qint64>(whole_of(time.dwHighDateTime, time.dwLowDateTime)) - unix_epoch;
}

quint64 whole_of(DWORD high, DWORD low)
{
    return quint64{high} << 32 | low;
}

} // namespace tally::platform
