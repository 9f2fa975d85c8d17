#pragma once

class QString;

namespace tally::bench {

/// The pages of boss runs, forts and the keep over a store of a million rounds, each with its
/// default filter: a refresh after a mail and one after nothing, and what a hundred of them cost in
/// memory.
void bench_report_pages(const QString &folder);

} // namespace tally::bench
