#pragma once

#include <QString>

#include <compare>
#include <optional>

namespace tally::platform {

/// Which folder stands at a path and when its entries last changed. Two stamps differ if an entry
/// came, went or was renamed between them, unless that happened within the granularity of the file
/// system's clock.
struct FolderStamp {
    quint64 device = 0;
    quint64 folder = 0;        ///< its number on the device
    double changed = 0.0;      ///< seconds since the Unix epoch, by this machine's clock
    qint64 modified_nanos = 0; ///< the full precision of the file system

    bool operator==(const FolderStamp &) const = default;
};

/// How far apart two changes are at most that get the same time, in seconds; with a good margin.
inline constexpr double folder_stamp_granularity = 3.0;

/// The stamp of a folder, or nothing where it tells nothing: the folder is missing, or lies on a
/// file system that is not known to note every change of a folder at once by the clock of this
/// machine (network and FAT file systems do not).
std::optional<FolderStamp> folder_stamp(const QString &dir);

} // namespace tally::platform
