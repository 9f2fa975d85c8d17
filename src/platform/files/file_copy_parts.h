#pragma once

#include <QString>

namespace tally::platform {

/// How the name of every partial copy begins.
inline constexpr char partial_prefix[] = ".part-";

/// Writes a whole copy under another name beside `to` and renames it.
/// \param replace whether it takes the place of a file that is there
bool put_copy(const QString &from, const QString &to, bool replace);

} // namespace tally::platform
