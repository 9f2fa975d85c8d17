#pragma once

#include "data/import/import_trouble.h"

#include <QString>

#include <atomic>
#include <functional>
#include <optional>

namespace tally::data {

class TallyDb;

struct ImportStats {
    qint32 scanned = 0;         ///< files that the walk finished, successfully or not
    qint32 imported = 0;        ///< files of which at least one report was stored
    qint32 errors = 0;          ///< files whose import threw; 1 if the path is no folder
    ImportTrouble trouble = {}; ///< what the counters do not tell
};

/// What the import of one mail came to.
struct MailImport {
    bool is_new = false;            ///< at least one report was stored
    std::optional<QString> failure; ///< why one could not be stored
};

/// Called with (scanned, total, imported) on the importing thread.
using ImportProgress = std::function<void(qint32, qint32, qint32)>;

/// Whether a file of this name is a mail of the game.
bool is_mail_file(const QString &name);

/// Stores every report of one mail file that the store does not know yet. The file's name is the
/// report's identity; the caller has tested it with `is_mail_file`. A copy of the file is kept in
/// `raw_dir` unless that is empty.
/// \return whether at least one report was stored by this call.
/// \throws std::runtime_error if the store cannot tell what it knows.
bool import_file(const QString &path, const QString &raw_dir, TallyDb &db);

/// The same, told in full.
MailImport import_mail(const QString &path, const QString &raw_dir, TallyDb &db);

/// Imports a folder's mail files in the order of their names and then links forts to their chains.
/// Each mail that could not be stored has a line in the log, and so has their number.
/// `progress` may be empty and is called every 200 files and once at the end; `cancel` may be null
/// and is read between files.
ImportStats import_dir(const QString &dir, const QString &raw_dir, TallyDb &db,
                       const ImportProgress &progress, const std::atomic<bool> *cancel);

} // namespace tally::data
