#pragma once

#include <QString>

namespace tally::tools {

struct FillOptions {
    int rounds = 100'000; ///< of barbarian chains; everything else in proportion
    int players = 3;
    int days = 730;
    double end = 1'790'000'000.0; ///< of the last day, seconds since the Unix epoch
    unsigned seed = 1;
};

/// Fills a store, which must not exist yet, with the reports of some years of play: chains of ten
/// rounds, a third of the barbarians met again, three to six items for a won round; for a thousand
/// rounds 200 field attacks, 20 boss kills and 10 forts, most of them linked to a chain. The same
/// options give the same rows.
/// \throws std::runtime_error
void fill_store(const QString &path, const FillOptions &options);

} // namespace tally::tools
