#pragma once

#include <QString>
#include <QStringList>

namespace tally::platform {

/// All state of the program lies in one `data` folder beside the executable, so that it can run
/// from whichever folder it was unpacked to. Paths are computed anew at each call and use forward
/// slashes.

/// The folder that holds `data`: the parent of `executable_dir` when that is called `system` in any
/// letter case, else `executable_dir` itself.
QString app_root_of(const QString &executable_dir);

QString app_root_dir();
QString data_dir();
QString db_path();
QString raw_dir();
QString icon_cache_dir();

/// Creates `data`, `data/raw` and `data/icon_cache`. A folder that cannot be created shows up as
/// the failure of whoever writes into it.
void ensure_data_dirs();

/// Where the game's installers put the mail cache, likeliest first.
QStringList mailcache_candidates();

/// The first of `candidates` that is a folder; if none is, the first of them all the same.
QString first_existing_dir(const QStringList &candidates);

QString default_mailcache_dir();

} // namespace tally::platform
