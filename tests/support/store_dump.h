#pragma once

#include <QString>

namespace tally::data {
class TallyDb;
}

namespace tally::test {

/// All rows of all report tables as a text that is equal for two stores exactly if they hold the
/// same reports: children stand with what identifies their parents, in the order of their mail; the
/// time of the import and the store's own row numbers are left out. Children without a parent show
/// up too.
QString store_dump(const QString &path);
QString store_dump(const data::TallyDb &db);

} // namespace tally::test
