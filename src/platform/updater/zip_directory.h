#pragma once

#include <QString>

#include <optional>

namespace tally::platform::Updater {

/// Why a zip must not be unpacked; nothing if it may. Only its central directory is read, and what
/// one unpacker might read in another way than the next is refused.
/// \param executable what must lie in its root
std::optional<QString> zip_fault(const QString &path, const QString &executable);

} // namespace tally::platform::Updater
