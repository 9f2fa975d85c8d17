#include "platform/files/folder_stamp.h"

#include "platform/files/file_win32.h"

#include <QtNumeric>

#include <array>
#include <string_view>

namespace tally::platform {
namespace {

/// Shares of other machines call themselves NTFS too.
bool lies_on_a_local_ntfs(const std::wstring &path)
{
    std::array<wchar_t, 512> root = {};
    std::array<wchar_t, 64> system = {};
    return GetVolumePathNameW(path.c_str(), root.data(), static_cast<DWORD>(root.size())) !=
               FALSE &&
           GetDriveTypeW(root.data()) == DRIVE_FIXED &&
           GetVolumeInformationW(root.data(), nullptr, 0, nullptr, nullptr, nullptr, system.data(),
                                 static_cast<DWORD>(system.size())) != FALSE &&
           std::wstring_view(system.data()) == L"NTFS";
}

} // namespace

std::optional<FolderStamp> folder_stamp(const QString &dir)
{
    const Win32File folder = open_win32(dir, FILE_READ_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS);
    BY_HANDLE_FILE_INFORMATION status = {};
    if (!folder || GetFileInformationByHandle(folder.get(), &status) == FALSE ||
        (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 ||
        !lies_on_a_local_ntfs(win32_path(dir)))
        return std::nullopt;
    qint64 nanos = 0;
    if (qMulOverflow(ticks_of(status.ftLastWriteTime), qint64{100}, &nanos))
        return std::nullopt;
    return FolderStamp{status.dwVolumeSerialNumber,
                       whole_of(status.nFileIndexHigh, status.nFileIndexLow),
                       static_cast<double>(nanos) / 1e9, nanos};
}

} // namespace tally::platform
