#include "ui/chains/chain_cards.h"

#include "ui/parts/format_count.h"
#include "ui/parts/value_texts.h"

namespace tally::ui {
namespace {

QString count_or_none(int count)
{
    return count == 0 ? no_value : format_count(count);
}

QString count_with_share(int count, int all)
{
    return all == 0 ? no_value
                    : QStringLiteral("%1\n(%2%)")
                          .arg(format_count(count), QString::number(100.0 * count / all, 'f', 1));
}

/// One decimal; nothing for what is not above 0.
QString rate(double value, const QString &unit = {})
{
    return value > 0.0 ? QString::number(value, 'f', 1) + unit : no_value;
}

} // namespace

ChainCardTexts chain_cards(const data::ChainSummary &summary)
{
    const double rounds = summary.battles;
    const double seconds = summary.total_dur;
    return {
        format_count(summary.files),
        format_count(summary.battles),
        count_with_share(summary.wins, summary.battles),
        count_with_share(summary.escapes, summary.battles),
        summary.battles == 0 ? no_value : format_count(summary.kills),
        summary.chains_ap_only < 1
            ? no_value
            : QString::number(static_cast<double>(summary.kills) / summary.chains_ap_only, 'f', 2),
        duration_text(seconds),
        count_or_none(summary.honor),
        duration_text(summary.avg_dur),
        summary.battles == 0 ? no_value : rate(seconds / rounds, QStringLiteral("s")),
        seconds > 0.0 ? rate(rounds / (seconds / 3600.0)) : no_value,
        count_or_none(summary.free_ap),
        count_or_none(summary.tactical),
    };
}

} // namespace tally::ui
