#include "ui/honor/honor_texts.h"

#include "data/store/sql_values.h"
#include "ui/parts/format_count.h"
#include "ui/parts/local_time.h"

namespace tally::honor {
namespace {

const QString unknown = QStringLiteral("---");

QString age_text(qint64 seconds)
{
    if (seconds < 60)
        return QStringLiteral("%1s ago").arg(seconds);
    if (seconds < 3600)
        return QStringLiteral("%1 min ago").arg(seconds / 60);
    return QStringLiteral("%1h ago").arg(seconds / 3600);
}

OvertakeTexts nobody()
{
    return {{}, {{}, QStringLiteral("ot_name")}, {{}, QStringLiteral("gap_far")}};
}

OvertakeTexts texts_of(const OvertakeRow &target)
{
    constexpr std::int64_t near_gap = 1'000;
    StyledText gap{QStringLiteral("OVERTAKEN!"), QStringLiteral("gap_ok")};
    if (target.gap > 0)
        gap = {u'+' + ui::format_count(target.gap),
               target.gap < near_gap ? QStringLiteral("gap_near") : QStringLiteral("gap_far")};
    return {rank_text(target.rank), {target.name, QStringLiteral("ot_name")}, gap};
}

/// Somebody stands there, but no roll has been read that tells who.
OvertakeTexts unknown_rival(std::optional<int> rank)
{
    return {rank_text(rank),
            {QStringLiteral("???"), QStringLiteral("ot_name_missing")},
            {QStringLiteral("need sync"), QStringLiteral("gap_far")}};
}

} // namespace

QString honor_text(std::optional<std::int64_t> honor)
{
    return honor ? ui::format_count(*honor) : unknown;
}

StyledText delta_text(int delta)
{
    if (delta == 0)
        return {QStringLiteral("+0"), QStringLiteral("muted")};
    if (delta < 0)
        return {ui::format_count(delta), QStringLiteral("delta_neg")};
    return {u'+' + ui::format_count(delta), QStringLiteral("delta_pos")};
}

QString read_text(std::optional<double> base_ts, double now)
{
    if (!base_ts)
        return unknown;
    const auto age = data::saturated<qint64>(now - *base_ts);
    return QStringLiteral("%1 (%2)").arg(age_text(age),
                                         ui::local_time_text(*base_ts, QStringLiteral("HH:mm:ss")));
}

QString rank_text(std::optional<int> rank)
{
    return rank ? QStringLiteral("#%1").arg(*rank) : unknown;
}

std::array<OvertakeTexts, 3> overtake_texts(const std::vector<OvertakeRow> &targets,
                                            const HonorSnapshot &snapshot)
{
    std::array<OvertakeTexts, 3> texts;
    const int count = static_cast<int>(targets.size());
    for (int slot = 0; slot < static_cast<int>(texts.size()); ++slot) {
        OvertakeTexts &row = texts[static_cast<std::size_t>(slot)];
        const bool is_beyond_first = snapshot.rank && *snapshot.rank <= slot + 1;
        if (slot < count)
            row = texts_of(targets[static_cast<std::size_t>(count - 1 - slot)]);
        else if (is_beyond_first || !snapshot.leaderboard.empty())
            row = nobody();
        else
            row = unknown_rival(snapshot.rank ? std::optional(*snapshot.rank - 1 - slot)
                                              : std::nullopt);
    }
    return texts;
}

} // namespace tally::honor
