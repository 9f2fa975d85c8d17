#include "app/console/console_mode.h"

#include "data/master/master_cache.h"
#include "platform/identity.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tally::app {
namespace {

QVariantMap document(const char *json)
{
    return QJsonDocument::fromJson(json).object().toVariantMap();
}

QString level_text(std::optional<int> level)
{
    return level ? QString::number(*level) : QStringLiteral("null");
}

void test_barbarians(RunLog &log, data::MasterCache &cache)
{
    cache.set_kind(QStringLiteral("barbs"), document(R"({"types": [
        {"npc_type_min": 150009, "npc_type_max": 150013,
         "name": "English Soldiers", "level_offset": -149968}]})"));
    const data::BarbInfo known = cache.barb(150009.0);
    log.line(
        QStringLiteral("barb(150009) = name=%1 level=%2").arg(known.name, level_text(known.level)));
    require(known.name == u"English Soldiers" && known.level == 41,
            QStringLiteral("barb info mismatch"));
    const data::BarbInfo unknown = cache.barb(999.0);
    require(unknown.name == u"Barb" && !unknown.level,
            QStringLiteral("out-of-range barb should fall back"));
    log.line(QStringLiteral("out-of-range fallback OK"));
}

void test_formations(RunLog &log, data::MasterCache &cache)
{
    cache.set_kind(QStringLiteral("armaments"),
                   document(R"({"formations": {"1.0": "Infantry Formation"}})"));
    const QString known = cache.formation_name(1.0);
    log.line(QStringLiteral("formation(1.0) = %1").arg(known));
    require(known == u"Infantry Formation", QStringLiteral("formation lookup"));
    const QString unknown = cache.formation_name(99.0);
    require(unknown == u"?99",
            QStringLiteral("unknown formation should render '?<id>' got %1").arg(unknown));
}

void test_heroes(RunLog &log, data::MasterCache &cache)
{
    cache.set_kind(QStringLiteral("heroes"), document(R"({"heroes": {
        "123": {"name": "Achilles", "icon": "achilles.webp"}}})"));
    const data::HeroInfo hero = cache.hero(123.0);
    log.line(QStringLiteral("hero(123) = name=%1 icon=%2").arg(hero.name, hero.icon));
    require(hero.name == u"Achilles" && hero.icon == u"achilles.webp",
            QStringLiteral("hero lookup"));
    require(cache.hero_name(999.0) == u"H999", QStringLiteral("unknown hero should return H<id>"));
}

} // namespace

int test_master()
{
    return run_console_mode(QStringLiteral("./smoke-test-master.log"), [](RunLog &log) {
        log.line(
            QStringLiteral("== MasterCache smoke test — %1 ==").arg(platform::application_version));
        data::MasterCache &cache = data::MasterCache::instance();
        cache.clear();
        test_barbarians(log, cache);
        test_formations(log, cache);
        test_heroes(log, cache);
        log.line(QStringLiteral("== MasterCache smoke test PASSED =="));
    });
}

} // namespace tally::app
