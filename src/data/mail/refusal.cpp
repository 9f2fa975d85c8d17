#include "data/mail/refusal.h"

#include <QLoggingCategory>

namespace tally::data {
namespace {

Q_LOGGING_CATEGORY(log_import, "tally.import")

} // namespace

void log_refusal(const QString &mail_name, const std::exception &reason)
{
    qCWarning(log_import) << "passed over" << mail_name << "because it has" << reason.what();
}

} // namespace tally::data
