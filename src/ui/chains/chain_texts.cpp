#include "ui/chains/chain_texts.h"

#include "ui/parts/utc_time.h"
#include "ui/parts/value_texts.h"

#include <QStringView>

#include <algorithm>
#include <cmath>

namespace tally::ui {
namespace {

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

QString best_chain_line(const QString &label, const std::optional<data::BestChain> &best)
{
    if (!best || !best->start_time)
        return QStringLiteral("%1: no data").arg(label);
    return QStringLiteral("%1: %2 rounds in %3 (%4)")
        .arg(label, QString::number(best->wins), duration_text(best->dur),
             utc_moment_text(*best->start_time, QStringLiteral("yyyy-MM-dd HH:mm 'UTC'")));
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
