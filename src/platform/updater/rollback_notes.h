#pragma once

#include <QString>

namespace tally::platform::Updater {

/// Notes beside the marker of an update that a start has found it.
/// \param marker whose file holds the version that was installed
/// \return whether an earlier start of that version has noted it already, and so did not last until
/// the marker goes. Without a marker nothing happens.
bool note_start(const QString &marker);

/// Removes the marker and the note beside it.
void remove_marker(const QString &marker);

} // namespace tally::platform::Updater
