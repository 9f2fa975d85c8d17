#pragma once

namespace tally::data {

class StoreConnection;

int link_fort_to_chains(const StoreConnection &store);

} // namespace tally::data
