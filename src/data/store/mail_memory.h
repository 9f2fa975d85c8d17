#pragma once

#include "data/store/records.h"

#include <vector>

namespace tally::data {

class StoreConnection;

// What the store knows of a mail: its reports, and what was found when it was looked through.

bool report_exists(const StoreConnection &store, const QString &file_name);
bool field_report_exists(const StoreConnection &store, const QString &file_name);
bool trial_report_exists(const StoreConnection &store, const QString &file_name);
bool fort_report_exists(const StoreConnection &store, const QString &file_name);
ReportKinds stored_kinds(const StoreConnection &store, const QString &file_name);
KnownMail known_mail(const StoreConnection &store, const QString &file_name,
                     const platform::FileStamp &stamp);
/// Makes the table, anew if it has another shape: it only saves work, so what it held gives way.
/// To be called in a write transaction.
void ensure_mail_memory(const StoreConnection &store);
void note_examined(const StoreConnection &store, const std::vector<ExaminedMail> &mails);

} // namespace tally::data
