#pragma once

#include <QString>

namespace tally::data {

/// Keeps a copy of a mail in the folder of raw copies, unless that has no name. A copy that exists
/// is never replaced, but one that was taken while the game still wrote the mail is completed. A
/// file larger than any mail can be is not copied. Failures are not reported.
/// \param size of the mail, in bytes
void keep_raw_copy(const QString &path, qint64 size, const QString &raw_dir);

/// Removes what imports that were killed left of their copies.
void remove_torn_copies(const QString &raw_dir);

} // namespace tally::data
