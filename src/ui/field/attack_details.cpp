#include "ui/field/attack_details.h"

#include "data/master/master_cache.h"
#include "data/store/sql_values.h"
#include "ui/field/field_attack.h"
#include "ui/parts/format_count.h"
#include "ui/parts/utc_time.h"
#include "ui/parts/value_texts.h"

#include <QStringList>

#include <algorithm>

namespace tally::ui {
namespace {

/// More than any mail of the game has; without bounds a made-up one could hold the window up.
constexpr qsizetype longest_name = 200;
constexpr qsizetype longest_text = 20'000;

QString bounded(const QString &text, qsizetype longest)
{
    return text.size() > longest ? text.left(longest) + QStringLiteral("…") : text;
}

QString or_otherwise(const QString &text, const QString &otherwise)
{
    return text.isEmpty() ? otherwise : text;
}

/// The columns of an attack, with short ways to what they hold.
class Row {
public:
    explicit Row(const QVariantMap &values) : values_(values) {}

    QVariant value(const QString &column) const { return values_.value(column); }
    QString text(const QString &column) const
    {
        return bounded(value(column).toString(), longest_text);
    }
    QString name(const QString &column) const
    {
        return bounded(value(column).toString(), longest_name);
    }
    int number(const QString &column) const { return data::int_in(value(column)).value_or(0); }
    qint64 points(const QString &column) const { return whole_number(value(column)).value_or(0); }

private:
    const QVariantMap &values_;
};

QString attack_title(const Row &row)
{
    const int number = std::max(row.number(QStringLiteral("attack_seq")), 1);
    const int count = row.number(QStringLiteral("n_attacks"));
    const QString place =
        count < 2 ? QString() : QStringLiteral("  (attack %1/%2)").arg(number).arg(count);
    return QStringLiteral("Field Fight: %1 vs %2%3")
        .arg(name_text(row.name(QStringLiteral("player_name"))),
             name_text(row.name(QStringLiteral("enemy_name"))), place);
}

QString head_line(const Row &row)
{
    QStringList tags;
    if (row.number(QStringLiteral("is_kvk")) != 0)
        tags << QStringLiteral("KVK");
    if (row.number(QStringLiteral("is_rally")) != 0)
        tags << QStringLiteral("Rally");
    const double time = data::number_or_zero(row.value(QStringLiteral("email_time")));
    const QString moment = utc_time_text(time, QStringLiteral("yyyy-MM-dd HH:mm:ss 'UTC'"));
    return tags.isEmpty() ? moment
                          : QStringLiteral("%1 [%2]").arg(moment, tags.join(QStringLiteral(", ")));
}

QString hero_name(const QVariant &id)
{
    const double hero = data::number_or_zero(id);
    return hero == 0.0 ? QStringLiteral("?") : data::MasterCache::instance().hero_name(hero);
}

QString level_line(const Row &row, const QString &prefix, const QString &suffix)
{
    constexpr int most_stars = 100;
    const int level = row.number(prefix + QStringLiteral("hlv") + suffix);
    const int stars =
        std::clamp(row.number(prefix + QStringLiteral("hst") + suffix), 0, most_stars);
    const bool is_awakened = row.number(prefix + QStringLiteral("haw") + suffix) != 0;
    return QStringLiteral("%1  %2%3")
        .arg(level > 0 ? QStringLiteral("Level %1").arg(level) : QStringLiteral("Level ?"),
             QString(stars, u'★'), is_awakened ? QStringLiteral(" + Awakened") : QString());
}

/// \param suffix of the columns: empty for the first hero, "2" for the second
HeroDetails hero_details(const Row &row, const QString &prefix, const QString &suffix)
{
    const auto text = [&](const QString &column) {
        return row.text(prefix + column + suffix);
    };
    return {hero_name(row.value(prefix + QStringLiteral("hid") + suffix)),
            level_line(row, prefix, suffix),
            or_otherwise(text(QStringLiteral("hss")), QStringLiteral("(none)")),
            text(QStringLiteral("heq")), text(QStringLiteral("inscriptions"))};
}

QString castle_line(const Row &row, const QString &prefix)
{
    const int level = row.number(prefix + QStringLiteral("ct"));
    const auto formation = data::number_in(row.value(prefix + QStringLiteral("formation")));
    return QStringLiteral("%1   Formation: %2")
        .arg(level > 0 ? QStringLiteral("Castle L%1").arg(level) : QStringLiteral("Castle L?"),
             data::MasterCache::instance().formation_name(formation));
}

QString loss_text(const QVariant &value)
{
    if (value.isNull())
        return no_value;
    const auto count = whole_number(value);
    return count ? format_count(*count) : bounded(value.toString(), longest_name);
}

SideDetails side_details(const Row &row, const QString &prefix, const QString &title)
{
    SideDetails side;
    side.title = title;
    side.castle = castle_line(row, prefix);
    side.heroes = {hero_details(row, prefix, {})};
    if (data::number_or_zero(row.value(prefix + QStringLiteral("hid2"))) != 0.0)
        side.heroes.push_back(hero_details(row, prefix, QStringLiteral("2")));
    side.buffs = or_otherwise(row.text(prefix + QStringLiteral("hwbs")), QStringLiteral("(none)"));
    const char *const columns[] = {"kill_score", "death", "bad_hurt", "hurt", "power"};
    std::ranges::transform(columns, side.losses.begin(), [&](const char *column) {
        return loss_text(row.value(prefix + QLatin1StringView(column)));
    });
    return side;
}

QString side_title(const QString &pattern, const QString &name, const QString &alliance)
{
    return pattern.arg(name_text(name), alliance);
}

} // namespace

AttackDetails attack_details(const QVariantMap &values)
{
    const Row row(values);
    const qint64 mine = row.points(QStringLiteral("my_kill_score"));
    const qint64 theirs = row.points(QStringLiteral("enemy_kill_score"));
    return {
        .title = attack_title(row),
        .head = head_line(row),
        .outcome = outcome_of(mine, theirs),
        .favorite_key = or_otherwise(values.value(QStringLiteral("file_name")).toString(),
                                     values.value(QStringLiteral("email_id")).toString()),
        .mine = side_details(row, QStringLiteral("my_"),
                             side_title(QStringLiteral("MY: %1  [%2]"),
                                        row.name(QStringLiteral("player_name")),
                                        row.name(QStringLiteral("alliance_name")))),
        .theirs = side_details(row, QStringLiteral("enemy_"),
                               side_title(QStringLiteral("ENEMY: %1  [%2]"),
                                          row.name(QStringLiteral("enemy_name")),
                                          row.name(QStringLiteral("enemy_alliance")))),
        .ratio = QStringLiteral("KP ratio (my / enemy): %1").arg(kill_point_ratio(mine, theirs)),
    };
}

} // namespace tally::ui
