#include "services/notify_hours.h"

#include <QRegularExpression>

namespace tally::services {

NotifyHours parse_notify_hours(const QString &text)
{
    static const QRegularExpression separators(QStringLiteral(R"([\s,;]+)"));
    constexpr int most = 239;
    NotifyHours result;
    for (const QString &part : text.split(separators, Qt::SkipEmptyParts)) {
        bool is_number = false;
        const int hours = part.toInt(&is_number);
        if (is_number && hours >= 1 && hours <= most)
            result.hours << hours;
        else
            result.ignored << part;
    }
    return result;
}

} // namespace tally::services
