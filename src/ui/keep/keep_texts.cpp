#include "ui/keep/keep_texts.h"

#include "data/store/sql_values.h"
#include "ui/parts/format_count.h"
#include "ui/parts/local_time.h"
#include "ui/parts/utc_time.h"
#include "ui/parts/value_texts.h"

namespace tally::ui {
namespace {

const QString ready_colour = QStringLiteral("#4a9a5f");
const QString waiting_colour = QStringLiteral("rgba(88,101,242,0.85)");

KeepBand band(const QString &text, const QString &colour)
{
    return {text, QStringLiteral("background: %1; color: white; padding: 10px 16px; font-size: "
                                 "12pt; font-weight: bold; border-radius: 4px;")
                      .arg(colour)};
}

QString keep_tile_text(std::optional<int> x, std::optional<int> y)
{
    return x && y ? QStringLiteral("X:%1 Y:%2").arg(*x).arg(*y) : QStringLiteral("?");
}

} // namespace

QString countdown_text(double seconds)
{
    if (!(seconds > 0.0))
        return QStringLiteral("Ready!");
    const auto whole = data::saturated<qint64>(seconds);
    const qint64 hours = whole / 3600;
    const qint64 minutes = whole % 3600 / 60;
    return hours == 0 ? QStringLiteral("Ready in %1min").arg(minutes)
                      : QStringLiteral("Ready in %1h %2min").arg(hours).arg(minutes);
}

KeepBand loading_band()
{
    return band(QStringLiteral("Loading cooldown..."), waiting_colour);
}

KeepBand keep_band(double seconds, bool is_ready)
{
    const QString title = QStringLiteral("🏰 Barbarian Keep — %1");
    return is_ready ? band(title.arg(QStringLiteral("READY to kill!")), ready_colour)
                    : band(title.arg(countdown_text(seconds)), waiting_colour);
}

ItemRow keep_kill_row(const data::KeepKill &kill)
{
    RowCell time = left_cell(local_time_text(kill.event_time, QStringLiteral("yyyy-MM-dd HH:mm")));
    time.value = data::saturated<qint64>(kill.event_time * 1000.0);
    return {.key = kill.file_name,
            .cells = {time, left_cell(name_text(kill.boss_name)),
                      left_cell(keep_tile_text(kill.tile_x, kill.tile_y)),
                      right_cell(QStringLiteral("%1%").arg(kill.damage_rate, 0, 'f', 2),
                                 kill.damage_rate)}};
}

QString keep_kill_headline(const data::TrialDetail &detail)
{
    const QString time =
        utc_time_text(detail.event_time, QStringLiteral("yyyy-MM-dd HH:mm:ss 'UTC'"));
    return QStringLiteral("<b>%1</b> &nbsp;·&nbsp; %2 &nbsp;·&nbsp; %3 &nbsp;·&nbsp; "
                          "%4 participants")
        .arg(name_text(detail.boss_name).toHtmlEscaped(),
             keep_tile_text(detail.tile_x, detail.tile_y), time,
             QString::number(detail.participants.size()));
}

QString keep_player_text(const QString &name, double player_id, std::size_t kills)
{
    const QString id = QString::number(data::saturated<qint64>(player_id));
    return QStringLiteral("Kills of %1 (%2)")
        .arg(name.isEmpty() ? QStringLiteral("ID %1").arg(id)
                            : QStringLiteral("%1, ID %2").arg(name, id),
             format_count(static_cast<qint64>(kills)));
}

} // namespace tally::ui
