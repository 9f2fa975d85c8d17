#pragma once

namespace tally::data {
class TallyDb;
}

namespace tally::test {

/// Fills a store with chains whose numbers come from small sets, so that barbarians meet again,
/// times, wins and durations tie and anything may be missing. Some rows get values of their own
/// that no mail has, as if an older build had left them.
void add_random_chains(data::TallyDb &db, unsigned seed, int chains = 40);

} // namespace tally::test
