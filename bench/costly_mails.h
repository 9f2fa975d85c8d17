#pragma once

#include <QByteArray>

#include <span>

namespace tally::bench {

/// A mail of this size that costs a reader much: it reaches the bounds of mails, or goes beyond.
struct CostlyMail {
    const char *name;
    QByteArray (*make)(qsizetype size);
};
std::span<const CostlyMail> costly_mails();

} // namespace tally::bench
