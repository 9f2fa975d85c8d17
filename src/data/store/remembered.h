#pragma once

#include "data/store/tally_db.h"
#include "data/store/thread_connection.h"

namespace tally::data {

template <typename Result>
Result TallyDb::remembered(const QString &question, const QVariantList &params,
                           const std::function<Result()> &compute) const
{
    QString key = question;
    for (const QVariant &param : params) {
        const QString text = param.typeId() == QMetaType::Double
                                 ? QString::number(param.toDouble(), 'g', 17)
                                 : param.toString();
        key +=
            QStringLiteral("|%1:").arg(text.size()) + text; // unambiguous, whatever the texts hold
    }
    // Taken before the snapshot: a commit in between lets the result look older than it is, and be
    // computed once more.
    const ChangeStamp now = change_stamp();
    ThreadConnection &own = thread_connection();
    if (const std::any *known = own.results.find(now, key))
        return std::any_cast<const Result &>(*known);
    const ReadSnapshot snapshot(own.db);
    Result result = compute();
    if (snapshot.is_of_commits())
        own.results.insert(now, key, result);
    return result;
}

} // namespace tally::data
