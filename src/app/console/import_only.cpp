#include "app/console/console_mode.h"

#include "data/import/import_pipeline.h"
#include "data/store/tally_db.h"
#include "platform/identity.h"

#include <stdexcept>

namespace tally::app {
namespace {

QString truth(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

void log_contents(RunLog &log, const data::TallyDb &db)
{
    log.line(QStringLiteral("db counts: reports rows=%1  field_reports rows=%2  "
                            "distinct chain files=%3")
                 .arg(db.report_count(std::nullopt))
                 .arg(db.field_report_count())
                 .arg(db.chain_file_count()));
    const std::vector<data::PlayerRow> players = db.players();
    log.line(QStringLiteral("players in chain reports: %1").arg(players.size()));
    constexpr size_t shown_players = 3;
    for (size_t i = 0; i < std::min(players.size(), shown_players); ++i) {
        const data::PlayerRow &player = players[i];
        log.line(QStringLiteral("  - id=%1 name=%2 files=%3")
                     .arg(QString::number(player.player_id.value_or(0.0), 'f', 0), player.name,
                          QString::number(player.n)));
    }
}

} // namespace

int import_only(const QString &mail_dir)
{
    return run_console_mode(QStringLiteral("./import-only.log"), [&](RunLog &log) {
        const QString db_path = QStringLiteral("./tally-import.db");
        const QString raw_dir = QStringLiteral("./data/raw");
        log.line(QStringLiteral("== --import-only — %1 ==").arg(platform::application_version));
        log.line(QStringLiteral("mailcache = %1").arg(mail_dir));
        log.line(QStringLiteral("db_path  = %1").arg(db_path));
        log.line(QStringLiteral("raw_dir  = %1").arg(raw_dir));

        data::TallyDb db(db_path);
        log.line(QStringLiteral("init_schema() needs_hard=%1").arg(truth(db.init_schema())));
        const auto progress = [&log](qint32 scanned, qint32 total, qint32 imported) {
            log.line(QStringLiteral("  progress: scanned=%1/%2  imported=%3")
                         .arg(scanned)
                         .arg(total)
                         .arg(imported));
        };
        const data::ImportStats stats = data::import_dir(mail_dir, raw_dir, db, progress, nullptr);
        log.line(QStringLiteral("stats: scanned=%1  imported=%2  errors=%3")
                     .arg(stats.scanned)
                     .arg(stats.imported)
                     .arg(stats.errors));
        if (stats.trouble.any())
            log.line(QStringLiteral("WARNING: %1").arg(text_of(stats.trouble)));
        if (stats.trouble.lost_store)
            throw std::runtime_error("the store is gone");
        log_contents(log, db);
        log.line(QStringLiteral("== --import-only DONE =="));
    });
}

} // namespace tally::app
