#include "data/master/master_cache.h"
#include "field_builders.h"
#include "support/print_qt.h"
#include "ui/field/field_export.h"
#include "ui/field/field_rows.h"
#include "ui/parts/table_export.h"

#include <QAbstractItemModel>

#include <gmock/gmock.h>

#include <limits>

using namespace tally;
using namespace tally::test;
using namespace tally::ui;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

constexpr double noon = 1'740'830'400.0; // 2025-03-01 12:00 UTC
const QVariant null;

std::string line(const FieldRow &row)
{
    QStringList texts(row.texts.begin(), row.texts.end());
    return texts.join(u'|').toStdString();
}

} // namespace

TEST(FieldRows, GroupAttacksByTourAndReportInTheOrderTheyComeIn)
{
    const auto attack = [](double tour, double report, double time, qint64 mine, qint64 theirs,
                           const QString &enemy) {
        return attack_of({{"file_name", u"f"_s},
                          {"tour_id", tour},
                          {"email_id", report},
                          {"email_time", time},
                          {"my_kill_score", mine},
                          {"enemy_kill_score", theirs},
                          {"enemy_name", enemy}});
    };
    const std::vector<FieldRow> rows = field_rows({
        attack(5'000'000.0, 1.0, noon + 60, 3'000'000'000, 4, u"Zoe"_s),
        attack(7.0, 2.0, noon, 5, 0, u"Eve"_s),
        attack(5'000'000.0, 3.0, noon, 1, 2, u""_s),
        attack(5'000'000.0, 1.0, 0.0, 1'007, 2, u"Bob"_s),
        attack(5'000'000.0, 1.0, noon + 120, 0, 0, u"Ada"_s),
        attack(5'000'000.0, 1.0, noon + 90, 0, 0, u"Bob"_s),
        attack(5'000'000.0, 1.0, noon + 90, 0, 0, u"Dan & %1"_s),
    });
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(line(rows[0]), "▸ Tour 5000000  (6 atk, 2 rap)|2025-03-01 12:02 UTC||||6|||"
                             "3 000 001 008|8|375000126.00||");
    EXPECT_EQ(line(rows[1]), "▸ Tour 7  (1 atk, 1 rap)|2025-03-01 12:00 UTC||||1|||5|0|—||");
    ASSERT_EQ(rows[0].below.size(), 2u);
    EXPECT_EQ(line(rows[0].below[0]), "  📩 Report (5 atk)|2025-03-01 12:01 UTC||Ada, Bob, Dan & %1 "
                                      "+1||5|||3 000 001 007|6|||");
    EXPECT_EQ(line(rows[0].below[1]), "  📩 Report (1 atk)|2025-03-01 12:00 UTC||?||1|||1|2|||");
    std::vector<std::size_t> attacks;
    for (const FieldRow &row : rows[0].below[0].below)
        attacks.push_back(row.attack.value());
    EXPECT_THAT(attacks, ElementsAre(0, 3, 4, 5, 6));
}

TEST(FieldRows, TellWhatAnAttackWas)
{
    data::MasterCache::instance().set_kind(
        u"heroes"_s,
        {{u"heroes"_s, QVariantMap{{u"7"_s, QVariantMap{{u"name"_s, u"Leonidas"_s}}}}}});
    const struct {
        Columns columns;
        const char *line;
    } cases[] = {
        {{{"email_time", noon + 5.7},
          {"my_kill_score", 1'500},
          {"enemy_kill_score", 1'000},
          {"enemy_name", u"Eve"_s},
          {"enemy_alliance", u"A&E"_s},
          {"attack_seq", 2},
          {"n_attacks", 3},
          {"is_rally", 1},
          {"is_kvk", 1},
          {"my_hid", 7.0},
          {"my_hid2", 9.0},
          {"enemy_hid", 7.0},
          {"enemy_hid2", 0.0}},
         "|12:00:05|Win|Eve|A&E|2/3|✓|✓|1 500|1 000|1.50|Leonidas + H9|Leonidas + "},
        {{{"enemy_name", u"?"_s},
          {"enemy_npc_type", 3.0},
          {"my_kill_score", 1},
          {"enemy_kill_score", 2},
          {"attack_seq", 0},
          {"n_attacks", 2}},
         "|?|Loss|NPC #3||1/2|||1|2|0.50| + | + "},
        {{{"email_time", -5.0}, {"enemy_name", u""_s}, {"enemy_npc_type", 0.0}, {"n_attacks", 1}},
         "|?|Draw|?||1|||0|0|—| + | + "},
        {{{"email_time", u"soon"_s},
          {"my_kill_score", 1e300},
          {"enemy_kill_score", u"x"_s},
          {"attack_seq", 1e300},
          {"is_rally", null}},
         "|?|Draw|?||1|||0|0|—| + | + "},
    };
    for (const auto &[columns, text] : cases)
        EXPECT_EQ(line(field_rows({attack_of(columns)})[0].below[0].below[0]), text);
    data::MasterCache::instance().clear();
}

TEST(FieldRows, UnfoldWhatIsShort)
{
    const auto rows = field_rows(all_of({report_of(5, u"a"_s), report_of(6, u"b"_s),
                                         report_of(15, u"c"_s), report_of(16, u"d"_s)}));
    std::vector<std::pair<bool, bool>> unfolded;
    for (const FieldRow &tour : rows)
        unfolded.emplace_back(tour.is_unfolded, tour.below[0].is_unfolded);
    EXPECT_THAT(unfolded, ElementsAre(std::pair(true, true), std::pair(true, false),
                                      std::pair(true, false), std::pair(false, false)));
}

TEST(FieldRows, NameAttacksWithoutATourByTheirFileAndShortenLongNames)
{
    const auto name = [](const Columns &columns) {
        return field_rows({attack_of(columns)})[0].texts[report_column].toStdString();
    };
    EXPECT_EQ(name({{"file_name", u"mail"_s}, {"tour_id", null}}), "▸ Tour ?_mail  (1 atk, 1 rap)");
    EXPECT_EQ(name({{"tour_id", QString(35, u'x')}}),
              "▸ Tour " + std::string(35, 'x') + "  (1 atk, 1 rap)");
    EXPECT_EQ(name({{"tour_id", QString(36, u'x')}}),
              "▸ Tour " + std::string(35, 'x') + "...  (1 atk, 1 rap)");
    // Two mails without an id of their own are two reports.
    const auto rows = field_rows({attack_of({{"file_name", u"a"_s}, {"tour_id", 1.0}}),
                                  attack_of({{"file_name", u"b"_s}, {"tour_id", 1.0}})});
    EXPECT_EQ(rows.at(0).below.size(), 2u);
}

TEST(FieldRows, ASumBeyondAllNumbersStaysAtTheLargest)
{
    const qint64 most = std::numeric_limits<qint64>::max();
    auto attacks = report_of(2, u"a"_s);
    for (FieldAttack &attack : attacks)
        attack.my_kill_points = most;
    EXPECT_EQ(field_rows(attacks)[0].texts[my_points_column], u"9 223 372 036 854 775 807"_s);
}

TEST(FieldExport, GivesOneFlatRowForAnAttackWithBareNumbers)
{
    const std::vector<FieldAttack> attacks = {
        attack_of({{"file_name", u"other"_s}}),
        attack_of({{"tour_id", u"t"_s},
                   {"email_id", 12.0},
                   {"email_time", noon},
                   {"attack_seq", 1},
                   {"n_attacks", 2},
                   {"player_name", u"Ada"_s},
                   {"alliance_name", u"AL"_s},
                   {"enemy_name", u"=Eve"_s},
                   {"enemy_alliance", u"EA"_s},
                   {"is_kvk", 1},
                   {"my_kill_score", 3'000},
                   {"enemy_kill_score", 2'000},
                   {"my_hid", 7.0},
                   {"enemy_hid2", 9.0}}),
    };
    const auto table = attack_table(attacks, {1});
    EXPECT_EQ(csv_of(*table).mid(3).toStdString(),
              "Tour,Report,Time (UTC),Attack,Attacks,Result,Player,Alliance,Enemy,Enemy alliance,"
              "Rally,KvK,My KP,Enemy KP,KP ratio,My hero 1,My hero 2,Enemy hero 1,Enemy hero 2\r\n"
              "t,12,2025-03-01T12:00:00Z,1,2,Win,Ada,AL,'=Eve,EA,0,1,3000,2000,1.5,H7,,,H9\r\n");
}
