#include "data/master/master_cache.h"

#include "data/master/icon_file.h"
#include "data/values/numbers.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QReadLocker>
#include <QWriteLocker>

namespace tally::data {
namespace {

/// The tables' item keys are floating point numbers as the server's language writes them: "4.0".
QString item_number_text(double number)
{
    return is_plain_integer(number) ? id_text(number) + QStringLiteral(".0")
                                    : QString::number(number, 'g', 17);
}

bool is_map(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantMap;
}

} // namespace

MasterCache &MasterCache::instance()
{
    static MasterCache cache;
    return cache;
}

bool MasterCache::load_json(const QString &kind, const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return false;
    set_kind(kind, document.object().toVariantMap());
    return true;
}

void MasterCache::set_kind(const QString &kind, const QVariantMap &document)
{
    const QWriteLocker locker(&lock_);
    kinds_.insert(kind, document);
    ++generation_;
}

void MasterCache::clear()
{
    const QWriteLocker locker(&lock_);
    kinds_.clear();
    ++generation_;
}

QVariantMap MasterCache::section(const QString &kind, const QString &name) const
{
    return kinds_.value(kind).toMap().value(name).toMap();
}

HeroInfo MasterCache::hero_locked(double id) const
{
    const QVariant entry =
        section(QStringLiteral("heroes"), QStringLiteral("heroes")).value(id_text(id));
    if (!is_map(entry))
        return {};
    const QVariantMap hero = entry.toMap();
    return {hero.value(QStringLiteral("name")).toString(),
            hero.value(QStringLiteral("icon")).toString()};
}

HeroInfo MasterCache::hero(std::optional<double> id) const
{
    const QReadLocker locker(&lock_);
    return id ? hero_locked(*id) : HeroInfo();
}

QString MasterCache::hero_name(std::optional<double> id) const
{
    if (!id)
        return {};
    const QReadLocker locker(&lock_);
    const QString name = hero_locked(*id).name;
    return name.isEmpty() ? QStringLiteral("H%1").arg(id_text(*id)) : name;
}

BarbInfo MasterCache::barb(std::optional<double> npc_type) const
{
    const BarbInfo unknown{QStringLiteral("Barb"), std::nullopt};
    const std::optional<int> type = to_int(npc_type);
    if (!type)
        return unknown;

    const QReadLocker locker(&lock_);
    const QVariantList families =
        kinds_.value(QStringLiteral("barbs")).toMap().value(QStringLiteral("types")).toList();
    for (const QVariant &entry : families) {
        const QVariantMap family = entry.toMap();
        const auto min = int_of(family.value(QStringLiteral("npc_type_min"), -1));
        const auto max = int_of(family.value(QStringLiteral("npc_type_max"), -1));
        if (!min || !max || *type < *min || *type > *max)
            continue;
        const double offset = int_of(family.value(QStringLiteral("level_offset"))).value_or(0);
        return {family.value(QStringLiteral("name"), unknown.name).toString(),
                to_int(*type + offset)};
    }
    return unknown;
}

QString MasterCache::formation_name(std::optional<double> id) const
{
    if (!id)
        return QStringLiteral("—");
    const QReadLocker locker(&lock_);
    const QVariantMap formations =
        section(QStringLiteral("armaments"), QStringLiteral("formations"));
    QVariant name = formations.value(QString::number(*id, 'f', 1));
    if (name.isNull())
        name = formations.value(QString::number(*id, 'g', 15));
    return name.isNull() ? QStringLiteral("?%1").arg(QString::number(*id, 'g')) : name.toString();
}

ItemInfo MasterCache::item(std::optional<double> item_type,
                           std::optional<double> item_subtype) const
{
    ItemInfo info;
    if (!item_type || !item_subtype)
        return info;
    const QString key = item_number_text(*item_type) + u'_' + item_number_text(*item_subtype);

    const QReadLocker locker(&lock_);
    const QVariant entry = section(QStringLiteral("items"), QStringLiteral("items")).value(key);
    if (!is_map(entry))
        return info;
    const QVariantMap item = entry.toMap();
    info.name = item.value(QStringLiteral("name")).toString();
    info.unit_value = item.value(QStringLiteral("unit_value"), info.unit_value).toDouble();
    info.unit = item.value(QStringLiteral("unit")).toString();
    info.icon = item.value(QStringLiteral("icon")).toString();
    return info;
}

std::optional<QString> MasterCache::icon_path(const QString &section_name, const QString &key,
                                              const QString &cache_dir) const
{
    const QString hash = [&] {
        const QReadLocker locker(&lock_);
        return section(QStringLiteral("icons_index"), section_name)
            .value(key)
            .toMap()
            .value(QStringLiteral("hash"))
            .toString();
    }();
    const std::optional<QString> file_name = icon_file_name(hash);
    if (!file_name)
        return std::nullopt;
    const QString path = QDir(cache_dir).filePath(*file_name);
    return QFile::exists(path) ? std::optional(path) : std::nullopt;
}

} // namespace tally::data
