#include "ui/chains/chain_texts.h"

#include "data/store/sql_values.h"

#include <QDateTime>
#include <QStringView>

#include <algorithm>
#include <cmath>

namespace tally::ui {
namespace {

QString padded(qint64 number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

QString utc_minute(double time)
{
    const auto moment = QDateTime::fromSecsSinceEpoch(data::saturated<qint64>(time), Qt::UTC);
    return moment.isValid() ? moment.toString(QStringLiteral("yyyy-MM-dd HH:mm 'UTC'"))
                            : QStringLiteral("?");
}

QString hour_axis()
{
    QString axis(24, u' ');
    for (int hour = 0; hour < 24; hour += 3) {
        const QString number = QString::number(hour);
        axis.replace(hour, number.size(), number);
    }
    return axis;
}

} // namespace

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

QString best_chain_line(const QString &label, const std::optional<data::BestChain> &best)
{
    if (!best || !best->start_time)
        return QStringLiteral("%1: no data").arg(label);
    return QStringLiteral("%1: %2 rounds in %3 (%4)")
        .arg(label, QString::number(best->wins), duration_text(best->dur),
             utc_minute(*best->start_time));
}

QString sparkline(const std::array<int, 24> &chains)
{
    constexpr QStringView bars = u" ▁▂▃▄▅▆▇█";
    constexpr int highest = 8;
    static_assert(bars.size() == highest + 1);
    const int most = std::max(1, *std::max_element(chains.begin(), chains.end()));
    QString line;
    for (const int count : chains) {
        const auto height = std::lround(static_cast<double>(count) / most * highest);
        line += bars[std::clamp<qsizetype>(height, 0, highest)];
    }
    return QStringLiteral("[%1]\n %2").arg(line, hour_axis());
}

} // namespace tally::ui
