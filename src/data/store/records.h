#pragma once

#include "data/store/chain_records.h"
#include "data/store/field_records.h"
#include "data/store/report_kinds.h"
#include "data/store/trial_records.h"
#include "platform/files/exact_files.h"

#include <QString>

#include <optional>

namespace tally::data {

/// Rows and sums as the store hands them out.

/// What the store knows of a mail.
struct KnownMail {
    ReportKinds stored;
    /// What this version of the program found when it looked through just this content.
    std::optional<ReportKinds> examined;
};

/// A mail that was looked through, as its file was then, and what was found in it.
struct ExaminedMail {
    QString file_name;
    platform::FileStamp stamp;
    ReportKinds kinds;
};

struct HonorLogRow {
    double log_time = 0.0;
    std::optional<int> base_honor;
    std::optional<int> new_honor;
    std::optional<int> delta_reports;
    std::optional<int> estimated;
    std::optional<int> discrepancy;
};

struct PlayerRow {
    std::optional<double> player_id;
    QString name;
    int n = 0; ///< chains or mails of this account

    bool operator==(const PlayerRow &) const = default;
};

} // namespace tally::data
