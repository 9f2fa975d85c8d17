#pragma once

#include <QString>

namespace tally::sample {

/// Writes what a reference server serves: the tables under master/, the icons they name under icon/
/// and version.json. The same bytes at each call.
/// \throws std::runtime_error if a file cannot be written.
void write_reference_folder(const QString &path);

} // namespace tally::sample
