#pragma once

#include "data/store/tally_db.h"

#include <QString>
#include <QTemporaryDir>

namespace tally::tools {

/// A store with some days of made-up play, in a folder of its own, and the reference data that goes
/// with it in `MasterCache`.
class SampleStore {
public:
    /// The moment after the last mail.
    static constexpr double end = 1'790'028'000.0;

    /// \throws std::runtime_error if the folder cannot be filled
    SampleStore();

    data::TallyDb &db() { return db_; }
    QString icon_dir() const;

private:
    void load_reference_data();
    void import_mails();
    void keep_favorites();

    QTemporaryDir folder_;
    data::TallyDb db_;
};

} // namespace tally::tools
