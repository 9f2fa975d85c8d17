#pragma once

#include "data/store/chain_records.h"

#include <ostream>

/// How failing expectations show records.
namespace tally::data {

inline void PrintTo(const ChainSummary &s, std::ostream *out)
{
    *out << "battles " << s.battles << " wins " << s.wins << " free " << s.free_ap << " tactical "
         << s.tactical << " escapes " << s.escapes << " files " << s.files << " chains "
         << s.n_chains << " dur " << s.total_dur << " avg " << s.avg_dur << " honor " << s.honor
         << " ap only " << s.chains_ap_only << " min " << s.min_t.value_or(-1.0) << " max "
         << s.max_t.value_or(-1.0);
}

inline void PrintTo(const LootStat &s, std::ostream *out)
{
    *out << s.item_type.value_or(-1.0) << '/' << s.item_subtype.value_or(-1.0) << " pieces "
         << s.pieces << " value " << s.total_value << " battles " << s.battles;
}

inline void PrintTo(const BestChain &s, std::ostream *out)
{
    *out << s.file_name.toStdString() << " wins " << s.wins << " dur " << s.dur << " start "
         << s.start_time.value_or(-1.0);
}

} // namespace tally::data
