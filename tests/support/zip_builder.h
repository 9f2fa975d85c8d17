#pragma once

#include <QByteArray>
#include <QList>
#include <QtEndian>

namespace tally::test {

/// An entry of a zip, which may lie about itself.
struct ZipEntry {
    QByteArray name;
    QByteArray content = {};
    quint32 attributes = 0; ///< of the file, the upper half those of Unix
    int flags = 0;
    int method = 0;
    QByteArray extra = {};
    qint64 told_size = -1; ///< unpacked; below 0: the real one
};

inline QByteArray little(int bytes, quint64 value)
{
    QByteArray result;
    for (int i = 0; i < bytes; ++i)
        result += static_cast<char>(value >> (8 * i) & 0xff);
    return result;
}

inline QByteArray zip_end(qsizetype entries, qsizetype size, qsizetype offset)
{
    const auto count = little(2, static_cast<quint64>(entries));
    return "PK\5\6" + little(4, 0) + count + count + little(4, static_cast<quint64>(size)) +
           little(4, static_cast<quint64>(offset)) + little(2, 0);
}

/// A zip of entries that are not packed. Checksums are left out: nothing unpacks it.
inline QByteArray build_zip(const QList<ZipEntry> &entries)
{
    QByteArray files;
    QByteArray directory;
    for (const ZipEntry &entry : entries) {
        const auto size = static_cast<quint64>(entry.content.size());
        const QByteArray common =
            little(2, static_cast<quint64>(entry.flags)) +
            little(2, static_cast<quint64>(entry.method)) + little(8, 0) + little(4, size) +
            little(4, entry.told_size < 0 ? size : static_cast<quint64>(entry.told_size)) +
            little(2, static_cast<quint64>(entry.name.size())) +
            little(2, static_cast<quint64>(entry.extra.size()));
        directory += "PK\1\2" + little(4, 0x0014'0314) + common + little(6, 0) +
                     little(4, entry.attributes) + little(4, static_cast<quint64>(files.size())) +
                     entry.name + entry.extra;
        files += "PK\3\4" + little(2, 20) + common + entry.name + entry.extra + entry.content;
    }
    return files + directory + zip_end(entries.size(), directory.size(), files.size());
}

} // namespace tally::test
