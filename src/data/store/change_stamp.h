#pragma once

#include <QtGlobal>

namespace tally::data {

/// The state of a store's reports as one connection sees it. Unequal stamps may hide equal reports,
/// but equal ones of one thread never hide a change, whichever program made it. What is no report
/// (settings, acknowledgements, the honor log, the memory of examined mails) changes no stamp.
struct ChangeStamp {
    qint64 reports = -1; ///< counted changes
    qint64 schema = 0;   ///< rises when a table is made anew, which is not counted
    // Of any change, while a chain is stale: what changes in such a chain is not counted.
    qint64 others = 0; ///< rises with every commit of another connection
    qint64 own = 0;    ///< rows that this connection has changed

    bool operator==(const ChangeStamp &) const = default;
};

} // namespace tally::data
