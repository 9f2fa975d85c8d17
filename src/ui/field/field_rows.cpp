#include "ui/field/field_rows.h"

#include "data/store/sql_values.h"
#include "ui/parts/format_count.h"
#include "ui/parts/utc_time.h"
#include "ui/parts/value_texts.h"

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <numeric>
#include <set>

namespace tally::ui {
namespace {

using Indexes = std::vector<std::size_t>;

struct KeyedGroup {
    QString key;
    Indexes attacks;
};

const QString minute_format = QStringLiteral("yyyy-MM-dd HH:mm 'UTC'");

/// Keys are data and may hold anything; file names and ids have no line breaks.
QString key_below(const QString &key, const QString &parent)
{
    return parent + u'\n' + key;
}

/// In the order of the first of each.
std::vector<KeyedGroup> grouped(const std::vector<FieldAttack> &attacks, const Indexes &which,
                                QString FieldAttack::*key)
{
    std::vector<KeyedGroup> groups;
    QHash<QString, std::size_t> place;
    for (const std::size_t index : which) {
        const QString &value = attacks[index].*key;
        const auto known = place.constFind(value);
        const std::size_t group = known != place.cend() ? *known : groups.size();
        if (known == place.cend()) {
            place.insert(value, group);
            groups.push_back({value, {}});
        }
        groups[group].attacks.push_back(index);
    }
    return groups;
}

struct KillPoints {
    qint64 mine = 0;
    qint64 theirs = 0;
};

KillPoints kill_points(const std::vector<FieldAttack> &attacks, const Indexes &which)
{
    KillPoints points;
    for (const std::size_t index : which) {
        points.mine = sum_of(points.mine, attacks[index].my_kill_points);
        points.theirs = sum_of(points.theirs, attacks[index].enemy_kill_points);
    }
    return points;
}

void write_points(FieldRow &row, const KillPoints &points)
{
    row.text(my_points_column) = format_count(points.mine);
    row.text(enemy_points_column) = format_count(points.theirs);
}

QString shortened(const QString &tour)
{
    constexpr qsizetype longest = 35;
    return tour.size() > longest ? tour.left(longest) + QStringLiteral("...") : tour;
}

/// The first three enemies by name, and how many others there are.
QString enemies_text(const std::vector<FieldAttack> &attacks, const Indexes &which)
{
    constexpr qsizetype named = 3;
    std::set<QString> enemies;
    for (const std::size_t index : which)
        enemies.insert(name_text(attacks[index].enemy));
    const QStringList names(enemies.begin(), enemies.end());
    QString text = names.first(std::min(named, names.size())).join(QStringLiteral(", "));
    if (names.size() > named)
        text += QStringLiteral(" +%1").arg(names.size() - named);
    return text;
}

QString heroes_text(const std::array<QString, 2> &heroes)
{
    return QStringLiteral("%1 + %2").arg(heroes[0], heroes[1]);
}

QString check_mark(bool holds)
{
    return holds ? QStringLiteral("✓") : QString();
}

FieldRow attack_row(const FieldAttack &attack, std::size_t index, const QString &report)
{
    FieldRow row{.key = key_below(attack.file_name + u'\n' + attack.attack_id.toString(), report),
                 .attack = index};
    row.text(time_column) = utc_time_text(attack.time, QStringLiteral("HH:mm:ss"));
    row.text(result_column) = outcome_text(attack.outcome());
    row.text(enemy_column) = enemy_text(attack);
    row.text(alliance_column) = attack.enemy_alliance;
    row.text(attacks_column) = attack.count > 1
                                   ? QStringLiteral("%1/%2").arg(attack.number).arg(attack.count)
                                   : QStringLiteral("1");
    row.text(rally_column) = check_mark(attack.is_rally);
    row.text(kvk_column) = check_mark(attack.is_kvk);
    write_points(row, {attack.my_kill_points, attack.enemy_kill_points});
    row.text(ratio_column) = kill_point_ratio(attack.my_kill_points, attack.enemy_kill_points);
    row.text(my_heroes_column) = heroes_text(attack.my_heroes);
    row.text(enemy_heroes_column) = heroes_text(attack.enemy_heroes);
    return row;
}

double earliest(const std::vector<FieldAttack> &attacks, const Indexes &which)
{
    double first = 0.0;
    for (const std::size_t index : which) {
        const double time = attacks[index].time;
        if (time > 0.0 && (first == 0.0 || time < first))
            first = time;
    }
    return first;
}

FieldRow report_row(const std::vector<FieldAttack> &attacks, const KeyedGroup &report,
                    const QString &tour)
{
    constexpr std::size_t unfolded_below = 6;
    const std::size_t count = report.attacks.size();
    FieldRow row{.key = key_below(report.key, tour), .is_unfolded = count < unfolded_below};
    row.text(report_column) = QStringLiteral("  📩 Report (%1 atk)").arg(count);
    row.text(time_column) = utc_time_text(earliest(attacks, report.attacks), minute_format);
    row.text(enemy_column) = enemies_text(attacks, report.attacks);
    row.text(attacks_column) = QString::number(count);
    write_points(row, kill_points(attacks, report.attacks));
    for (const std::size_t index : report.attacks)
        row.below.push_back(attack_row(attacks[index], index, row.key));
    return row;
}

FieldRow tour_row(const std::vector<FieldAttack> &attacks, const KeyedGroup &tour)
{
    constexpr std::size_t unfolded_below = 16;
    const std::size_t count = tour.attacks.size();
    FieldRow row{.key = tour.key, .is_unfolded = count < unfolded_below};
    for (const KeyedGroup &report : grouped(attacks, tour.attacks, &FieldAttack::report))
        row.below.push_back(report_row(attacks, report, row.key));
    double latest = 0.0;
    for (const std::size_t index : tour.attacks)
        latest = std::max(latest, attacks[index].time);
    const KillPoints points = kill_points(attacks, tour.attacks);
    row.text(report_column) =
        QStringLiteral("▸ Tour %1  (%2 atk, %3 rap)")
            .arg(shortened(tour.key), QString::number(count), QString::number(row.below.size()));
    row.text(time_column) = utc_time_text(latest, minute_format);
    row.text(attacks_column) = QString::number(count);
    write_points(row, points);
    row.text(ratio_column) = kill_point_ratio(points.mine, points.theirs);
    return row;
}

FieldRow empty_row()
{
    FieldRow row;
    row.text(report_column) = QStringLiteral("(no attacks in filter)");
    return row;
}

} // namespace

std::vector<FieldRow> field_rows(const std::vector<FieldAttack> &attacks)
{
    Indexes all(attacks.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    std::vector<FieldRow> rows;
    for (const KeyedGroup &tour : grouped(attacks, all, &FieldAttack::tour))
        rows.push_back(tour_row(attacks, tour));
    if (rows.empty())
        rows.push_back(empty_row());
    return rows;
}

QString enemy_text(const FieldAttack &attack)
{
    if (!attack.enemy.isEmpty() && attack.enemy != u"?")
        return attack.enemy;
    return attack.enemy_npc_type > 0.0
               ? QStringLiteral("NPC #%1").arg(data::saturated<qint64>(attack.enemy_npc_type))
               : QStringLiteral("?");
}

QString outcome_text(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Win:
        return QStringLiteral("Win");
    case Outcome::Loss:
        return QStringLiteral("Loss");
    case Outcome::Draw:
        break;
    }
    return QStringLiteral("Draw");
}

} // namespace tally::ui
