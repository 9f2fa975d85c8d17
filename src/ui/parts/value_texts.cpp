#include "ui/parts/value_texts.h"

#include "data/store/sql_values.h"

namespace tally::ui {
namespace {

QString padded(qint64 number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

} // namespace

QString name_text(const QString &name)
{
    return name.isEmpty() ? QStringLiteral("?") : name;
}

QString duration_text(double seconds)
{
    const auto whole = data::saturated<qint64>(seconds);
    if (whole <= 0)
        return no_value;
    if (whole >= 3600)
        return QStringLiteral("%1h %2m").arg(whole / 3600).arg(padded(whole % 3600 / 60));
    if (whole >= 60)
        return QStringLiteral("%1m %2s").arg(whole / 60).arg(padded(whole % 60));
    return QStringLiteral("%1s").arg(whole);
}

} // namespace tally::ui
