#include "reference_folder.h"

#include "icon_drawing.h"
#include "sample_items.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <stdexcept>

namespace tally::sample {
namespace {

constexpr std::array formations = {
    "Infantry Formation",
    "Cavalry Formation",
    "Archer Formation",
    "Wedge",
    "Hollow Square",
    "Delta",
    "Pincer",
    "Arch",
    "Line",
};
constexpr std::array epithets = {"", " the Younger", " of Thebes", " the Bold"};
constexpr std::array inscriptions = {"Steadfast", "Swift", "Unbroken", "Watchful"};

/// A family of barbarians: the types `min` to `max`, where the level is the type and `offset`.
struct Family {
    int min;
    int max;
    const char *name;
    int offset;
};
// The first range that fits wins.
constexpr std::array families = {
    Family{150009, 150013, "English Soldiers", -149968},
    Family{150014, 150050, "Frankish Raiders", -149968},
    Family{101000, 101100, "Barbarians", -100999},
    Family{101101, 101115, "Barbarian Fort", -101100},
};

[[noreturn]] void fail(const QString &what, const QString &reason)
{
    throw std::runtime_error(QStringLiteral("%1: %2").arg(what, reason).toStdString());
}

QString text(const char *latin_1)
{
    return QString(QLatin1StringView(latin_1));
}

void write(const QDir &folder, const QString &name, const QByteArray &content)
{
    const QString path = folder.filePath(name);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        fail(path, file.errorString());
}

void write_table(const QDir &folder, const char *kind, const QJsonObject &table)
{
    write(folder, QStringLiteral("master/%1.json").arg(text(kind)), QJsonDocument(table).toJson());
}

/// Writes a picture under the hash of its bytes. \return its entry in an icon index.
QJsonObject write_icon(const QDir &folder, const QImage &image)
{
    QByteArray webp;
    QBuffer buffer(&webp);
    QImageWriter writer(&buffer, "webp");
    writer.setQuality(90);
    if (!writer.write(image))
        fail(QStringLiteral("an icon as WebP"), writer.errorString());
    const QString hash = QString::fromLatin1(
        QCryptographicHash::hash(webp, QCryptographicHash::Sha256).toHex().first(32));
    write(folder, QStringLiteral("icon/%1.webp").arg(hash), webp);
    return {{QStringLiteral("hash"), hash}};
}

QString icon_key(QLatin1StringView name)
{
    QString key = QString(name).toLower();
    key.remove(u'(').remove(u')').remove(u',');
    return key.replace(u' ', u'-');
}

QJsonObject item_table()
{
    QJsonObject items;
    for (const SampleItem &item : sample_items())
        items.insert(QStringLiteral("%1.0_%2.0").arg(item.type).arg(item.subtype),
                     QJsonObject{{QStringLiteral("name"), item.name},
                                 {QStringLiteral("unit"), item.unit},
                                 {QStringLiteral("unit_value"), item.unit_value},
                                 {QStringLiteral("icon"), icon_key(item.name)}});
    return {{QStringLiteral("items"), items}};
}

QJsonObject hero_table()
{
    const auto names = hero_names();
    QJsonObject heroes;
    for (std::size_t i = 0; i < hero_count; ++i) {
        const QLatin1StringView name = names[i % names.size()];
        heroes.insert(
            QString::number(i + 1),
            QJsonObject{{QStringLiteral("name"), QString(name) + text(epithets[i / names.size()])},
                        {QStringLiteral("icon"), icon_key(name) + QStringLiteral(".webp")}});
    }
    return {{QStringLiteral("heroes"), heroes}};
}

QJsonObject barb_table()
{
    QJsonArray types;
    for (const Family &family : families)
        types.append(QJsonObject{{QStringLiteral("npc_type_min"), family.min},
                                 {QStringLiteral("npc_type_max"), family.max},
                                 {QStringLiteral("name"), text(family.name)},
                                 {QStringLiteral("level_offset"), family.offset}});
    return {{QStringLiteral("types"), types}};
}

/// Names under "1.0", "2.0" and so on.
template <std::size_t size>
QJsonObject numbered(const std::array<const char *, size> &names)
{
    QJsonObject result;
    for (std::size_t i = 0; i < size; ++i)
        result.insert(QStringLiteral("%1.0").arg(i + 1), text(names[i]));
    return result;
}

/// The icons that views ask for by a fixed name.
QJsonObject loot_icons(const QDir &folder)
{
    struct Icon {
        const char *key;
        Motif motif;
        QRgb colour;
    };
    constexpr std::array icons = {
        Icon{"crystals", Motif::Gem, 0x5cd6f5},    Icon{"gems", Motif::Gem, 0xff6b9d},
        Icon{"universal", Motif::Clock, 0x58b368}, Icon{"training", Motif::Clock, 0xe8973a},
        Icon{"healing", Motif::Clock, 0xd85a6a},   Icon{"Leather", Motif::Hide, 0xb8bec6},
        Icon{"Iron Ore", Motif::Ingot, 0xb8bec6},  Icon{"Animal Bones", Motif::Bone, 0xb8bec6},
        Icon{"Ebony", Motif::Plank, 0xb8bec6},
    };
    QJsonObject section;
    for (const Icon &icon : icons)
        section.insert(text(icon.key),
                       write_icon(folder, item_icon(icon.motif, QColor(icon.colour))));
    return section;
}

QJsonObject item_icons(const QDir &folder)
{
    QJsonObject section;
    for (const SampleItem &item : sample_items())
        section.insert(icon_key(item.name),
                       write_icon(folder, item_icon(item.motif, QColor(item.colour))));
    return section;
}

QJsonObject hero_icons(const QDir &folder)
{
    QJsonObject section;
    int index = 0;
    for (const QLatin1StringView name : hero_names())
        section.insert(icon_key(name), write_icon(folder, hero_icon(index++)));
    section.insert(QStringLiteral("unknown"), write_icon(folder, unknown_hero_icon()));
    return section;
}

} // namespace

void write_reference_folder(const QString &path)
{
    const QDir folder(path);
    write_table(folder, "heroes", hero_table());
    write_table(folder, "items", item_table());
    write_table(folder, "inscriptions", {{QStringLiteral("inscriptions"), numbered(inscriptions)}});
    write_table(folder, "armaments", {{QStringLiteral("formations"), numbered(formations)}});
    write_table(folder, "barbs", barb_table());
    write_table(folder, "icons_index",
                {{QStringLiteral("loot"), loot_icons(folder)},
                 {QStringLiteral("all_loot"), item_icons(folder)},
                 {QStringLiteral("commanders"), hero_icons(folder)}});
    // Older than any program that asks.
    write(folder, QStringLiteral("version.json"),
          QJsonDocument(QJsonObject{{QStringLiteral("version"), QStringLiteral("v0")}}).toJson());
}

} // namespace tally::sample
