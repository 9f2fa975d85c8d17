#include "data/import/import_trouble.h"

#include "data/import/import_log.h"

#include <QStringList>

namespace tally::data {
namespace {

/// What the database said, without the statement that failed and what Qt puts behind it.
QString bare_reason(const QString &failure)
{
    const QString reason = failure.sliced(failure.lastIndexOf(u": ") + 1).trimmed();
    return reason.section(QStringLiteral(" Unable to "), 0, 0);
}

} // namespace

void ImportTrouble::add(const QString &name, const QString &failure)
{
    qCWarning(log_import).noquote() << "not stored:" << name << failure;
    if (mails++ == 0)
        reason = failure;
}

QString text_of(const ImportTrouble &trouble, Remedy remedy)
{
    QStringList sentences;
    if (!trouble.unlisted.isEmpty())
        sentences << QStringLiteral("The folder cannot be listed (%1).").arg(trouble.unlisted);
    if (trouble.lost_store)
        sentences << QStringLiteral("The store's file was removed or replaced while the program "
                                    "ran: nothing new is kept.");
    if (trouble.mails > 0) {
        const bool one = trouble.mails == 1;
        const QString them = one ? QStringLiteral("it") : QStringLiteral("them");
        sentences << QStringLiteral("%1 could not be stored (%2); %3.")
                         .arg(one ? QStringLiteral("1 mail")
                                  : QStringLiteral("%1 mails").arg(trouble.mails),
                              bare_reason(trouble.reason),
                              remedy == Remedy::Reimport
                                  ? QStringLiteral("\"Reimport mailcache...\" brings %1").arg(them)
                                  : QStringLiteral("drop %1 again").arg(them));
    }
    return sentences.join(u' ');
}

QString with_trouble(const QString &text, const QString &trouble)
{
    if (trouble.isEmpty())
        return text;
    return text + QLatin1StringView(text.endsWith(u'.') ? " " : ". ") + trouble;
}

} // namespace tally::data
