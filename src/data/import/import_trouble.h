#pragma once

#include <QString>

namespace tally::data {

/// What went wrong in an import of several mails.
struct ImportTrouble {
    qint32 mails = 0;        ///< with a report that could not be stored
    QString reason;          ///< of the first of them
    QString unlisted;        ///< why the folder gave no names, or not all; empty if it did
    bool lost_store = false; ///< the store's file is no longer in its place

    bool any() const { return mails > 0 || !unlisted.isEmpty() || lost_store; }
    /// Adds a mail and logs its failure.
    void add(const QString &name, const QString &failure);
};

/// What brings the mails that could not be stored.
enum class Remedy { Reimport, DropAgain };

/// For the user, in whole sentences; empty if there is no trouble.
QString text_of(const ImportTrouble &trouble, Remedy remedy = Remedy::Reimport);

/// The text with what the user is to know behind it.
QString with_trouble(const QString &text, const QString &trouble);

} // namespace tally::data
