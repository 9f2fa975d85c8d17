#include "app/console/console_mode.h"

#include "data/store/tally_db.h"
#include "platform/identity.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace tally::app {
namespace {

QString new_database_path()
{
    // Qt names no folder if the one of the environment does not exist yet.
    QString folder = QDir::tempPath();
    if (folder.isEmpty())
        folder = QDir::cleanPath(qEnvironmentVariable("TMPDIR"));
    QDir().mkpath(folder);
    const QString path = QStringLiteral("%1/tallyhand-smoke-%2.db")
                             .arg(folder)
                             .arg(QDateTime::currentMSecsSinceEpoch());
    QFile::remove(path);
    return path;
}

void test_settings(RunLog &log, data::TallyDb &db)
{
    const QString key = QStringLiteral("mailcache_dir");
    const QString value = QStringLiteral("C:/Users/test/AppData/LocalLow/lilith/rok");
    db.set_setting(key, value);
    const std::optional<QString> read_back = db.get_setting(key);
    require(read_back == value, QStringLiteral("setting roundtrip mismatch: got=%1")
                                    .arg(read_back.value_or(QStringLiteral("<null>"))));
    log.line(QStringLiteral("settings roundtrip OK"));
}

void test_empty_counts(RunLog &log, const data::TallyDb &db)
{
    require(db.report_count(std::nullopt) == 0 && db.field_report_count() == 0 &&
                db.chain_file_count() == 0,
            QStringLiteral("fresh DB counts should be zero"));
    log.line(QStringLiteral("empty-DB counts OK"));
}

void test_empty_queries(RunLog &log, const data::TallyDb &db)
{
    constexpr double barbarians = 1.0;
    log.line(QStringLiteral("empty queries: players=%1 field_players=%2 hourly[0]=%3 pairs=%4")
                 .arg(db.players().size())
                 .arg(db.field_players().size())
                 .arg(db.hourly(barbarians, {}, {}, {})[0])
                 .arg(db.hero_pairs(barbarians, {}, {}, {}).size()));
    require(db.summary(barbarians, {}, {}, {}) == data::ChainSummary(),
            QStringLiteral("summary() on empty DB nonzero"));
    log.line(QStringLiteral("summary() on empty DB OK"));
    const int honor = db.honor_since(0.0);
    log.line(QStringLiteral("honor_since(0)=%1").arg(honor));
    require(honor == 0, QStringLiteral("honor_since nonzero on empty DB"));
}

void test_honor_log(RunLog &log, data::TallyDb &db)
{
    db.log_honor_summary(1000.0, 100, 2000.0, 160, 50, 150, 10);
    const auto rows = db.recent_honor_log(10);
    require(rows.size() == 1,
            QStringLiteral("honor discrepancy roundtrip: size=%1").arg(rows.size()));
    log.line(QStringLiteral("honor discrepancy roundtrip OK"));
}

void remove_database(const QString &path)
{
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1StringView(suffix));
}

} // namespace

int test_db()
{
    return run_console_mode(QStringLiteral("./smoke-test-db.log"), [](RunLog &log) {
        log.line(
            QStringLiteral("== TallyDb smoke test — %1 ==").arg(platform::application_version));
        const QString path = new_database_path();
        log.line(QStringLiteral("db_path = %1").arg(path));
        {
            data::TallyDb db(path);
            log.line(QStringLiteral("init_schema() -> needs_hard_reimport=%1")
                         .arg(db.init_schema() ? u"true" : u"false"));
            test_settings(log, db);
            test_empty_counts(log, db);
            test_empty_queries(log, db);
            test_honor_log(log, db);
        }
        log.line(QStringLiteral("== TallyDb smoke test PASSED =="));
        remove_database(path);
    });
}

} // namespace tally::app
