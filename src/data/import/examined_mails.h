#pragma once

#include "data/store/records.h"
#include "platform/clock/clock.h"

#include <vector>

namespace tally::data {

class TallyDb;

/// Notes in the store which mails were looked through and what was in them, so that the next import
/// need not read them again. What cannot be noted is looked through once more.
class ExaminedMails {
public:
    explicit ExaminedMails(TallyDb &db, platform::Clock clock = platform::system_time);
    /// Stores what is still to be stored.
    ~ExaminedMails();
    ExaminedMails(const ExaminedMails &) = delete;
    ExaminedMails &operator=(const ExaminedMails &) = delete;

    void note(ExaminedMail mail);

private:
    void store();

    TallyDb &db_;
    const platform::Clock clock_;
    std::vector<ExaminedMail> to_store_;
};

} // namespace tally::data
