#pragma once

#include <QByteArray>

namespace tally::platform::Updater {

/// Why the name of a zip's entry must not be unpacked, on any system; null if it may. '\' counts as
/// '/', because some unpackers take it for that.
const char *name_fault(const QByteArray &name);

} // namespace tally::platform::Updater
