#include "platform/files/exact_files.h"

#include "platform/files/file_win32.h"

#include <QDir>
#include <QFile>
#include <QtNumeric>

#include <algorithm>
#include <string>

namespace tally::platform {
namespace {

/// \param status what the system says of a file, by its name or its handle
template <typename Status>
std::optional<FileStamp> stamp_in(const Status &status)
{
    qint64 nanos = 0;
    if ((status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
        qMulOverflow(ticks_of(status.ftLastWriteTime), qint64{100}, &nanos))
        return std::nullopt;
    return FileStamp{nanos,
                     static_cast<qint64>(whole_of(status.nFileSizeHigh, status.nFileSizeLow))};
}

} // namespace

FolderListing list_folder(const QString &dir)
{
    const std::wstring all_entries = win32_path(dir) + L"\\*";
    WIN32_FIND_DATAW first = {};
    HANDLE search = FindFirstFileW(all_entries.c_str(), &first);
    if (search == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_NOT_FOUND)
        return {{}, qt_error_string()};
    if (search != INVALID_HANDLE_VALUE)
        FindClose(search);
    return {QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDir::Name), {}};
}

std::optional<FileStamp> file_stamp(const QString &path)
{
    WIN32_FILE_ATTRIBUTE_DATA status = {};
    if (GetFileAttributesExW(win32_path(path).c_str(), GetFileExInfoStandard, &status) == FALSE)
        return std::nullopt;
    return stamp_in(status);
}

std::optional<FileId> file_id(const QString &path)
{
    const Win32File file = open_win32(path, FILE_READ_ATTRIBUTES);
    BY_HANDLE_FILE_INFORMATION status = {};
    if (!file || GetFileInformationByHandle(file.get(), &status) == FALSE)
        return std::nullopt;
    return FileId{status.dwVolumeSerialNumber,
                  whole_of(status.nFileIndexHigh, status.nFileIndexLow)};
}

bool file_exists(const QString &path)
{
    return QFile::exists(path);
}

struct InputFile::Native {
    Win32File file;
    BY_HANDLE_FILE_INFORMATION status = {};
};

InputFile::InputFile(const QString &path) : native_(std::make_unique<Native>())
{
    native_->file = open_win32(path, GENERIC_READ);
    if (native_->file)
        GetFileInformationByHandle(native_->file.get(), &native_->status);
}

InputFile::~InputFile() = default;

std::optional<FileStamp> InputFile::stamp() const
{
    return native_->file ? stamp_in(native_->status) : std::nullopt;
}

qint64 InputFile::size() const
{
    return static_cast<qint64>(
        whole_of(native_->status.nFileSizeHigh, native_->status.nFileSizeLow));
}

double InputFile::modified() const
{
    if (!native_->file)
        return 0.0;
    const qint64 milliseconds = ticks_of(native_->status.ftLastWriteTime) / 10'000;
    return static_cast<double>(milliseconds) / 1000.0;
}

QByteArray InputFile::read(qint64 count)
{
    constexpr qint64 step = 1 << 24;
    QByteArray bytes(count, Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < count) {
        const auto wanted = static_cast<DWORD>(std::min(count - filled, step));
        DWORD got = 0;
        if (ReadFile(native_->file.get(), bytes.data() + filled, wanted, &got, nullptr) == FALSE ||
            got == 0)
            break;
        filled += got;
    }
    bytes.truncate(filled);
    return bytes;
}

} // namespace tally::platform
