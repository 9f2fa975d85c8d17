#pragma once

#include <QString>

namespace tally::bench {

/// A page of field fights on 100,000 attacks of two years, of which a filter of 30 days shows 1,000
/// rows, and the window of one attack.
void bench_field_pages(const QString &folder);

} // namespace tally::bench
