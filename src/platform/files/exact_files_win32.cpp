#include "platform/files/exact_files.h"

#include "platform/files/file_win32.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtNumeric>

#include <algorithm>
#include <atomic>
#include <vector>

namespace tally::platform {
namespace {

/// A name in the same folder that no other copy in progress uses.
QString partial_name_beside(const QString &path)
{
    static std::atomic<unsigned> copies = 0;
    return QStringLiteral("%1/.part-%2-%3")
        .arg(QFileInfo(path).path(), QString::number(GetCurrentProcessId()),
             QString::number(++copies));
}

/// \return whether all that `from` holds was written to the new file `to`.
bool copy_content(HANDLE from, const std::wstring &to)
{
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

QStringList regular_file_names(const QString &dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name);
}

std::optional<FileStamp> file_stamp(const QString &path)
{
    WIN32_FILE_ATTRIBUTE_DATA status = {};
    if (GetFileAttributesExW(win32_path(path).c_str(), GetFileExInfoStandard, &status) == FALSE)
        return std::nullopt;
    return stamp_in(status);
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

bool copy_file(const QString &from, const QString &to)
{
    const Win32File source = open_win32(from, GENERIC_READ);
    if (!source || file_exists(to))
        return false;
    const std::wstring partial = win32_path(partial_name_beside(to));
    // Without a flag a move replaces nothing.
    if (copy_content(source.get(), partial) &&
        MoveFileExW(partial.c_str(), win32_path(to).c_str(), 0) != FALSE)
        return true;
    DeleteFileW(partial.c_str());
    return false;
}

} // namespace tally::platform
