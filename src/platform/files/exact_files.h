#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace tally::platform {

/// Files by their exact names. A file's name is the identity of a report, but a Linux file name is
/// a run of bytes that need not be UTF-8, and Qt neither lists nor opens such a file. Here every
/// byte that is not part of valid UTF-8 becomes one character of a private range, so that each name
/// has exactly one text and each text leads back to its file. On Windows names are UTF-16 already.

/// The text of a name or path given in the system's bytes, and the way back.
QString text_of_native_name(QByteArrayView name);
QByteArray native_name_of_text(QStringView text);

/// The text of a path as Qt, the settings or a person writes it. It differs where the path holds
/// one of the characters that stand for stray bytes here.
QString exact_path(const QString &path);

/// A folder's regular files, symbolic links excluded, in ascending order of their UTF-16 code
/// units.
struct FolderListing {
    QStringList names;
    QString failure; ///< why names are missing; empty if none is
};
FolderListing list_folder(const QString &dir);

/// The names alone. A folder that is missing or unreadable has none.
QStringList regular_file_names(const QString &dir);

bool file_exists(const QString &path);

/// What changes when a file's content does, unless it is written twice within the granularity of
/// the file system's clock.
struct FileStamp {
    qint64 modified_nanos = 0; ///< since the Unix epoch, the full precision of the file system
    qint64 size = 0;           ///< bytes

    bool operator==(const FileStamp &) const = default;
};

/// Nothing if there is no such file.
std::optional<FileStamp> file_stamp(const QString &path);

/// Which file lies at a path: two files that exist at the same time never have the same.
struct FileId {
    quint64 device = 0;
    quint64 number = 0; ///< on the device

    bool operator==(const FileId &) const = default;
};

/// Nothing if there is no such file.
std::optional<FileId> file_id(const QString &path);

/// A file opened for unbuffered reading, once and for all. One that cannot be opened is empty.
class InputFile {
public:
    explicit InputFile(const QString &path);
    ~InputFile();
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    /// When it was opened; nothing if it could not be.
    std::optional<FileStamp> stamp() const;
    qint64 size() const; ///< bytes, when it was opened
    /// When it was last modified, in seconds since the Unix epoch, whole milliseconds.
    double modified() const;
    /// Up to `count` further bytes.
    QByteArray read(qint64 count);

private:
    struct Native;
    std::unique_ptr<Native> native_;
};

/// The whole content of a file; empty if it cannot be read.
QByteArray read_file(const QString &path);

} // namespace tally::platform
