#include "store/tally_db.h"

namespace tally::data {

int TallyDb::field_report_count() const
{
    return single_int(QStringLiteral("SELECT COUNT(*) FROM field_reports"));
}

} // namespace tally::data
