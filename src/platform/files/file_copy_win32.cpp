#include "platform/files/exact_files.h"
#include "platform/files/file_copy.h"
#include "platform/files/file_copy_parts.h"
#include "platform/files/file_win32.h"

#include <QDir>
#include <QFileInfo>

#include <atomic>
#include <vector>

namespace tally::platform {
namespace {

/// A name in the same folder that no other copy in progress uses.
QString partial_name_beside(const QString &path)
{
    static std::atomic<unsigned> copies = 0;
    return QStringLiteral("%1/%2%3-%4")
        .arg(QFileInfo(path).path(), QLatin1StringView(partial_prefix),
             QString::number(GetCurrentProcessId()), QString::number(++copies));
}

/// \return whether all that `from` holds was written to the new file `to`.
bool copy_content(HANDLE from, const std::wstring &to)
{
    // Shared with nobody, so that no other process can remove it while it is written.
    HANDLE file = CreateFileW(to.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const Win32File copy(file);
    std::vector<char> buffer(1 << 16);
    const auto size = static_cast<DWORD>(buffer.size());
    for (DWORD got = 0; ReadFile(from, buffer.data(), size, &got, nullptr) != FALSE;) {
        if (got == 0)
            return true;
        DWORD written = 0;
        if (WriteFile(file, buffer.data(), got, &written, nullptr) == FALSE || written != got)
            return false;
    }
    return false;
}

} // namespace

bool put_copy(const QString &from, const QString &to, bool replace)
{
    const Win32File source = open_win32(from, GENERIC_READ);
    if (!source)
        return false;
    const std::wstring partial = win32_path(partial_name_beside(to));
    const DWORD flags = replace ? MOVEFILE_REPLACE_EXISTING : 0;
    if (copy_content(source.get(), partial) &&
        MoveFileExW(partial.c_str(), win32_path(to).c_str(), flags) != FALSE)
        return true;
    DeleteFileW(partial.c_str());
    return false;
}

void remove_abandoned_copies(const QString &dir)
{
    const QDir folder(dir);
    const QString pattern = QLatin1StringView(partial_prefix) + QStringLiteral("*");
    for (const QString &name : folder.entryList({pattern}, QDir::Files | QDir::Hidden))
        DeleteFileW(win32_path(folder.filePath(name)).c_str());
}

} // namespace tally::platform
