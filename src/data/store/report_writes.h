#pragma once

#include "data/mail/field_report.h"

#include <QString>

namespace tally::data {

class StoreConnection;
struct BattleReport;
struct FortReport;
struct TrialReport;

// An insert replaces all rows that its mail left before.

void insert_report(const StoreConnection &store, const QString &file_name,
                   const BattleReport &report, double file_mtime, double imported_at);
void insert_field_report(const StoreConnection &store, const QString &file_name,
                         const FieldReport &attacks, double file_mtime, double imported_at);
void insert_trial_report(const StoreConnection &store, const QString &file_name,
                         const TrialReport &report, double file_mtime);
void insert_fort_report(const StoreConnection &store, const QString &file_name,
                        const FortReport &report, double file_mtime);

} // namespace tally::data
