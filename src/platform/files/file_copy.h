#pragma once

#include <QString>

namespace tally::platform {

/// Copies of files by their exact names. A copy is whole or absent: it is written under the name of
/// a partial copy and then renamed.

/// Makes a copy unless there is one: an existing file is never replaced.
/// \return whether this call made the copy.
bool copy_file(const QString &from, const QString &to);

/// Adds what is missing to a copy that was taken while the file was still being written: one that
/// the file begins with and goes on from. Any other copy stays as it is.
/// \return whether this call completed the copy.
bool complete_copy(const QString &from, const QString &to);

/// Removes the partial copies of processes that ended before they were done. Those that somebody is
/// writing stay.
void remove_abandoned_copies(const QString &dir);

} // namespace tally::platform
