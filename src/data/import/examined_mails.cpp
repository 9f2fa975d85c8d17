#include "data/import/examined_mails.h"

#include "data/store/tally_db.h"

#include <exception>
#include <utility>

namespace tally::data {
namespace {

constexpr std::size_t mails_a_transaction = 1000;

// While a file is being written its time may stand still. Only a stamp that is older than any
// clock's granularity tells that the content is final.
constexpr double settling_seconds = 10.0;

} // namespace

ExaminedMails::ExaminedMails(TallyDb &db, platform::Clock clock) : db_(db), clock_(std::move(clock))
{}

ExaminedMails::~ExaminedMails()
{
    store();
}

void ExaminedMails::note(ExaminedMail mail)
{
    const double modified = static_cast<double>(mail.stamp.modified_nanos) / 1e9;
    if (clock_() - modified < settling_seconds)
        return;
    to_store_.push_back(std::move(mail));
    if (to_store_.size() >= mails_a_transaction)
        store();
}

void ExaminedMails::store()
{
    try {
        if (!to_store_.empty())
            db_.note_examined(to_store_);
    } catch (const std::exception &) {
        // Logged by the store.
    }
    to_store_.clear();
}

} // namespace tally::data
