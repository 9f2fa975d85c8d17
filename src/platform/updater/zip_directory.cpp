#include "platform/updater/zip_directory.h"

#include "platform/updater/zip_names.h"

#include <QFile>
#include <QSet>
#include <QtEndian>

#include <algorithm>

namespace tally::platform::Updater {
namespace {

constexpr int most_entries = 20'000;
constexpr qint64 most_unpacked = 2LL << 30;   // bytes
constexpr qint64 most_directory = 16LL << 20; // bytes

constexpr int end_size = 22;
constexpr int far_locator_size = 20;
constexpr int head_size = 46;

quint16 u16(const QByteArray &bytes, qsizetype at)
{
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

quint32 u32(const QByteArray &bytes, qsizetype at)
{
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}

/// Where the file says that its central directory lies.
struct Place {
    int entries = 0;
    qint64 offset = 0;
    qint64 size = 0;
};

/// Nothing unless the end record is the last thing in the file and follows the directory at once:
/// then all readers find the same one.
std::optional<Place> find_directory(QFile &file)
{
    if (file.size() < end_size || !file.seek(file.size() - end_size))
        return std::nullopt;
    const QByteArray end = file.read(end_size);
    if (end.size() != end_size || end.lastIndexOf("PK\5\6") != 0)
        return std::nullopt;
    const bool is_one_disk = u32(end, 4) == 0 && u16(end, 8) == u16(end, 10);
    const bool has_comment = u16(end, 20) != 0;
    const Place place{u16(end, 10), u32(end, 16), u32(end, 12)};
    const bool follows = place.offset + place.size == file.size() - end_size;
    return is_one_disk && !has_comment && follows ? std::optional(place) : std::nullopt;
}

/// One entry of the directory.
struct Entry {
    QByteArray name;
    QByteArray extra;
    int flags = 0;
    int method = 0;
    quint32 size = 0; ///< unpacked
    quint32 attributes = 0;
    qsizetype end = 0; ///< where the next one begins
};

std::optional<Entry> entry_at(const QByteArray &directory, qsizetype at)
{
    if (directory.size() - at < head_size || u32(directory, at) != 0x0201'4b50)
        return std::nullopt;
    const int name = u16(directory, at + 28);
    const int extra = u16(directory, at + 30);
    const int comment = u16(directory, at + 32);
    const qsizetype end = at + head_size + name + extra + comment;
    if (end > directory.size())
        return std::nullopt;
    return Entry{.name = directory.mid(at + head_size, name),
                 .extra = directory.mid(at + head_size + name, extra),
                 .flags = u16(directory, at + 8),
                 .method = u16(directory, at + 10),
                 .size = u32(directory, at + 24),
                 .attributes = u32(directory, at + 38),
                 .end = end};
}

/// A link, or another thing that is neither file nor folder.
bool is_special(const Entry &entry)
{
    constexpr quint32 type_mask = 0170000;
    constexpr quint32 regular = 0100000;
    constexpr quint32 folder = 0040000;
    constexpr quint32 reparse_point = 0x400;
    const quint32 type = (entry.attributes >> 16) & type_mask;
    return (type != 0 && type != regular && type != folder) ||
           (entry.attributes & reparse_point) != 0;
}

/// Whether the entry has another name beside the one that was looked at.
bool has_second_name(const Entry &entry)
{
    constexpr int unicode_path = 0x7075;
    for (qsizetype at = 0; at + 4 <= entry.extra.size(); at += 4 + u16(entry.extra, at + 2)) {
        if (u16(entry.extra, at) == unicode_path)
            return true;
    }
    return false;
}

const char *fault_of(const Entry &entry)
{
    constexpr int encrypted = 0x2041; // in one of three ways
    constexpr int stored = 0;
    constexpr int deflated = 8;
    if (const char *fault = name_fault(entry.name))
        return fault;
    if (is_special(entry))
        return "is that of a link";
    if (has_second_name(entry))
        return "is not its only one";
    if ((entry.flags & encrypted) != 0 || (entry.method != stored && entry.method != deflated))
        return "is that of a file which cannot be unpacked";
    const QByteArray root = entry.name.split('/').constFirst().split('\\').constFirst();
    return root.toLower() == "data" ? "lies in the folder of the user's data" : nullptr;
}

/// By which Windows would tell two files apart.
QByteArray identity_of(const QByteArray &name)
{
    QByteArray path = name.toLower().replace('\\', '/');
    if (path.endsWith('/'))
        path.chop(1);
    return path;
}

/// Whether what some readers take for the way to another directory stands at its end.
bool points_elsewhere(const QByteArray &directory)
{
    return directory.last(std::min<qsizetype>(directory.size(), far_locator_size))
        .startsWith("PK\6\7");
}

QString walk(const QByteArray &directory, int entries, const QByteArray &executable)
{
    QSet<QByteArray> names;
    qint64 unpacked = 0;
    bool has_executable = false;
    qsizetype at = 0;
    for (int i = 0; i < entries; ++i) {
        const auto entry = entry_at(directory, at);
        if (!entry)
            return QStringLiteral("its directory is damaged");
        if (const char *fault = fault_of(*entry))
            return QStringLiteral("the name \"%1\" %2")
                .arg(QString::fromLatin1(entry->name.left(80)), QLatin1StringView(fault));
        names.insert(identity_of(entry->name));
        unpacked += entry->size;
        has_executable = has_executable || entry->name == executable;
        at = entry->end;
    }
    if (at != directory.size() || points_elsewhere(directory))
        return QStringLiteral("its directory is damaged");
    if (names.size() != entries)
        return QStringLiteral("two of its files have the same name");
    if (unpacked > most_unpacked)
        return QStringLiteral("it would unpack to more than 2 GiB");
    return has_executable ? QString()
                          : QStringLiteral("it has no \"%1\" in its root")
                                .arg(QString::fromLatin1(executable));
}

QString fault_in(const QString &path, const QString &executable)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    const auto place = find_directory(file);
    if (!place)
        return QStringLiteral("it is no zip of the plain kind");
    if (place->entries > most_entries || place->size > most_directory)
        return QStringLiteral("it has more than 20,000 entries");
    const QByteArray directory = file.seek(place->offset) ? file.read(place->size) : QByteArray();
    return walk(directory, place->entries, executable.toLatin1());
}

} // namespace

std::optional<QString> zip_fault(const QString &path, const QString &executable)
{
    const QString fault = fault_in(path, executable);
    return fault.isEmpty() ? std::nullopt : std::optional(fault);
}

} // namespace tally::platform::Updater
