#pragma once

#include <QString>

#include <memory>
#include <string>

#include <windows.h>

namespace tally::platform {

struct CloseWin32File {
    void operator()(HANDLE file) const { CloseHandle(file); }
};

/// An open file or folder; null if it could not be opened.
using Win32File = std::unique_ptr<void, CloseWin32File>;

/// A path for the system's own calls. Its prefix lifts their limit of 260 characters and has them
/// take each name as it is.
std::wstring win32_path(const QString &path);

/// Opens what exists, so that others may go on writing, renaming and deleting it.
/// \param access and \param flags as CreateFileW takes them
Win32File open_win32(const QString &path, DWORD access, DWORD flags = FILE_ATTRIBUTE_NORMAL);

/// In units of 100 ns since the Unix epoch.
qint64 ticks_of(const FILETIME &time);

/// A number that the system gives in two halves.
quint64 whole_of(DWORD high, DWORD low);

} // namespace tally::platform
