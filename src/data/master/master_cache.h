#pragma once

#include <QByteArray>
#include <QReadWriteLock>
#include <QString>
#include <QVariantMap>

#include <atomic>
#include <optional>

namespace tally::data {

struct HeroInfo {
    QString name;
    QString icon;
};

struct BarbInfo {
    QString name;
    std::optional<int> level;
};

struct ItemInfo {
    QString name;
    double unit_value = 1.0;
    QString unit;
    QString icon;
};

/// The reference tables of the server, which turn the ids of the mails into names, units and icons.
/// It starts empty; every look-up answers at all times, with the fallback that its comment names
/// while the table has not arrived. Ids are optional doubles because that is how mails and store
/// deliver them. Any thread may call any member.
class MasterCache {
public:
    static MasterCache &instance();

    MasterCache(const MasterCache &) = delete;
    MasterCache &operator=(const MasterCache &) = delete;

    /// Replaces a kind's document ("heroes", "items", "barbs", "armaments", "inscriptions",
    /// "icons_index"). \return false, with the old document in place, if `json` is no JSON object.
    bool load_json(const QString &kind, const QByteArray &json);
    void set_kind(const QString &kind, const QVariantMap &document);
    void clear();
    /// Rises with every change of a document.
    quint64 generation() const { return generation_; }

    /// Both fields empty for an unknown hero.
    HeroInfo hero(std::optional<double> id) const;
    /// "H" and the id for a hero without a name; empty without an id.
    QString hero_name(std::optional<double> id) const;
    /// "Barb" without a level for an unknown type.
    BarbInfo barb(std::optional<double> npc_type) const;
    /// "?" and the id for an unknown formation; an em dash without an id.
    QString formation_name(std::optional<double> id) const;
    /// Empty texts and a unit value of 1 for an unknown item.
    ItemInfo item(std::optional<double> item_type, std::optional<double> item_subtype) const;
    /// The file of an icon in `cache_dir`, if the index (sections "loot", "all_loot", "commanders")
    /// knows the icon and its file is there.
    std::optional<QString> icon_path(const QString &section, const QString &key,
                                     const QString &cache_dir) const;

private:
    MasterCache() = default;

    QVariantMap section(const QString &kind, const QString &name) const;
    HeroInfo hero_locked(double id) const;

    mutable QReadWriteLock lock_;
    QVariantMap kinds_;
    std::atomic<quint64> generation_ = 0;
};

} // namespace tally::data
