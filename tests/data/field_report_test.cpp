#include "data/mail/field_report.h"

#include "data/mail/hero_texts.h"
#include "data/mail/mail_value.h"
#include "mail_encoder.h"
#include "support/hostile_mails.h"
#include "support/hostile_numbers.h"
#include "support/print_qt.h"

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::sample;
using namespace Qt::StringLiterals;
using data::FieldReport;

namespace {

constexpr std::optional<FieldReport> (*field_in)(QByteArrayView) = data::parse_field;

/// A field fight mail whose root holds `root` beside type and content.
QByteArray field(const QByteArray &attacks, const QByteArray &content = {},
                 const QByteArray &root = {})
{
    return mail(entry("type", text("Battle")) + root +
                entry("content", map(content + entry("Attacks", map(attacks)))));
}

QByteArray attack(const QByteArray &facts = {})
{
    return entry(1.0, map(facts));
}

FieldReport rows_of(const QByteArray &mail)
{
    const auto report = field_in(mail);
    EXPECT_TRUE(report);
    return report.value_or(FieldReport());
}

/// What one column holds in the first row of a mail.
QVariant cell(const QByteArray &mail, const QString &column)
{
    return rows_of(mail).value(0).toMap().value(column);
}

QVariantList column_of(const FieldReport &rows, const QString &column)
{
    QVariantList cells;
    for (const QVariant &row : rows)
        cells << row.toMap().value(column);
    return cells;
}

QByteArray self_char(const QByteArray &facts)
{
    return entry("SelfChar", map(facts));
}

} // namespace

TEST(FieldReport, RefusesWhatIsNoFieldFight)
{
    EXPECT_TRUE(field_in(field(attack())));
    EXPECT_FALSE(field_in({}));
    EXPECT_FALSE(field_in(field(attack()) + "NpcKillLoot"));
    EXPECT_FALSE(field_in(mail(entry("type", text("Battle")) + entry("content", map()))));
    EXPECT_FALSE(field_in(mail(entry("type", text("System")) +
                               entry("content", map({entry("Attacks", map(attack()))})))));
    EXPECT_FALSE(field_in(field({})));
    EXPECT_FALSE(field_in(field(entry(1.0, small_value(1)) + entry(2.0, text("x")))));
    EXPECT_FALSE(field_in(mail(entry("type", text("Battle")) + entry("content", text("Attacks")) +
                               entry("z", map({entry("Attacks", map(attack()))})))));
    EXPECT_FALSE(data::parse_field(u"/no/such/file"_s));
}

TEST(FieldReport, AttacksComeByTheNumbersOfTheirKeysAndKeepThemAsIds)
{
    // What is no number sorts as zero, and its place becomes the id.
    QByteArray attacks = entry(1.5, text("no map")) + entry(2.5, map({entry("Ets", text("2.5"))}));
    for (const char *key : {"3", "nan", "1", "-5", "10", "x", "2", "0", "00"})
        attacks += entry(key, map({entry("Ets", text(key))}));
    const FieldReport rows = rows_of(field(attacks));
    EXPECT_EQ(column_of(rows, u"email_time"_s),
              QVariantList({u"-5"_s, u"0"_s, u"00"_s, u"nan"_s, u"x"_s, u"1"_s, u"2"_s, u"2.5"_s,
                            u"3"_s, u"10"_s}));
    EXPECT_EQ(column_of(rows, u"attack_id"_s),
              QVariantList({-5.0, 0.0, 3.0, 4.0, 5.0, 1.0, 2.0, 2.5, 3.0, 10.0}));
    EXPECT_EQ(column_of(rows, u"attack_seq"_s), QVariantList({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(column_of(rows, u"n_attacks"_s), QVariantList(10, 10));
    EXPECT_EQ(cell(field(entry(-0.0, map())), u"attack_id"_s), 0.0);
    EXPECT_EQ(cell(field(entry(std::nan(""), map())), u"attack_id"_s), 1.0);
}

TEST(FieldReport, MailFactsStandInEveryRow)
{
    const FieldReport rows =
        rows_of(field(attack() + entry(2.0, map()),
                      entry("Role", number(3)) + entry("isConquerSeason", text("true")),
                      entry("id", number(123)) + entry("box", text("Report")) +
                          entry("receiver", text("player_12player_3"))));
    ASSERT_EQ(rows.size(), 2);
    for (const QVariant &row : rows) {
        QVariantList cells;
        for (const auto &column : {u"email_id"_s, u"email_box"_s, u"email_type"_s,
                                   u"email_receiver"_s, u"email_role"_s, u"is_kvk"_s})
            cells << row.toMap().value(column);
        EXPECT_EQ(cells, QVariantList({123.0, u"Report"_s, u"Battle"_s, u"123"_s, 3.0, 1}));
    }
}

TEST(FieldReport, MissingFactsAreNullZeroOrEmpty)
{
    const QVariantMap row = rows_of(field(attack())).value(0).toMap();
    for (const auto &column : {u"email_id"_s, u"email_role"_s, u"email_time"_s, u"tour_id"_s,
                               u"end_date"_s, u"player_id"_s, u"my_hid"_s, u"enemy_formation"_s}) {
        EXPECT_TRUE(row.contains(column)) << column.toStdString();
        EXPECT_FALSE(row.value(column).isValid()) << column.toStdString();
    }
    for (const auto &column : {u"email_receiver"_s, u"player_name"_s, u"enemy_heq"_s, u"my_hss"_s})
        EXPECT_EQ(row.value(column), u""_s) << column.toStdString();
    for (const auto &column : {u"is_rally"_s, u"my_haw"_s, u"enemy_kill_score"_s})
        EXPECT_EQ(row.value(column), 0) << column.toStdString();
    EXPECT_EQ(row.value(u"enemy_npc_type"_s), 0.0);
    EXPECT_EQ(row.size(), 69);
}

TEST(FieldReport, ArmiesStandSideBySide)
{
    const auto army = [](int id) {
        return entry("HId", number(id)) + entry("CT", small_value(6)) + entry("HEq2", number(45)) +
               entry("HAw", number(0.6)) + entry("PName", text("Ada")) +
               entry("Abbr", text("WLF")) + entry("NpcBType", number(id)) +
               entry("IsRally", small_value(1)) +
               entry("HWBs", map({entry("1", map({entry("Affix", number(id)),
                                                  entry("Buffs", text("7_0.1"))}))}));
    };
    const QVariantMap row =
        rows_of(field(attack(entry("CIdt", map(army(22)))), self_char(army(11)))).value(0).toMap();
    const std::pair<QString, QVariant> cells[] = {{u"my_hid"_s, 11.0},
                                                  {u"enemy_hid"_s, 22.0},
                                                  {u"my_ct"_s, 6},
                                                  {u"enemy_heq2"_s, u"45"_s},
                                                  {u"my_haw"_s, 1},
                                                  {u"alliance_name"_s, u"WLF"_s},
                                                  {u"enemy_alliance"_s, u"WLF"_s},
                                                  {u"enemy_npc_btype"_s, 22.0},
                                                  {u"is_rally"_s, 1},
                                                  {u"my_hwbs"_s, u"buff7: 10.0%"_s},
                                                  {u"enemy_inscriptions"_s, u"S1:#22"_s}};
    for (const auto &[column, value] : cells)
        EXPECT_EQ(row.value(column), value) << column.toStdString();
}

TEST(FieldReport, OwnScoresAreTheDamageAndEnemyScoresTheKills)
{
    const auto scores = [](double base) {
        return map({entry("KillScore", number(base)), entry("Death", number(base + 1)),
                    entry("Power", number(base + 2)), entry("BadHurt", number(base + 3)),
                    entry("Hurt", text(QByteArray::number(base + 4)))});
    };
    const QVariantMap row =
        rows_of(field(attack(entry("Damage", scores(10)) + entry("Kill", scores(20)))))
            .value(0)
            .toMap();
    const auto all = [&row](const QString &side) {
        QVariantList cells;
        for (const auto &column :
             {u"kill_score"_s, u"death"_s, u"power"_s, u"bad_hurt"_s, u"hurt"_s})
            cells << row.value(side + column);
        return cells;
    };
    EXPECT_EQ(all(u"my_"_s), QVariantList({10, 11, 12, 13, 14}));
    EXPECT_EQ(all(u"enemy_"_s), QVariantList({20, 21, 22, 23, 24}));
}

TEST(FieldReport, ScoreThatNoIntHoldsCountsAsNone)
{
    const auto score = [](const QByteArray &value) {
        return cell(field(attack(entry("Kill", map({entry("Power", value)})))), u"enemy_power"_s);
    };
    for (const double hostile : test::hostile_numbers)
        EXPECT_EQ(score(number(hostile)), 0) << hostile;
    EXPECT_EQ(score(text("3000000000")), 0);
    EXPECT_EQ(score(number(2147483647)), 2147483647);
    EXPECT_EQ(score(number(2.5)), 3);
}

TEST(FieldReport, FlagIsAnyNumberButZeroOrATrueText)
{
    const std::pair<QByteArray, int> flags[] = {
        {small_value(0), 0}, {small_value(2), 1},      {number(-1.0), 1},  {number(1e300), 1},
        {number(0.4), 0},    {text("true"), 1},        {text("False"), 0}, {text("0"), 0},
        {text(""), 0},       {text("SquareRally"), 1}, {map(), 0}};
    for (const auto &[value, flag] : flags)
        EXPECT_EQ(cell(field(attack(), self_char(entry("IsRally", value))), u"is_rally"_s), flag)
            << value.toHex().constData();
}

TEST(FieldReport, EndDateCountsTicksFromTheKnownMoment)
{
    const auto end = [](const QByteArray &content, const QByteArray &facts) {
        return cell(field(attack(facts), content), u"end_date"_s);
    };
    const QByteArray bts = entry("Bts", number(1.7e9));
    const QByteArray btk = entry("Btk", number(100));
    EXPECT_EQ(end(bts + btk, entry("Ets", number(160))), 1700000060.0);
    EXPECT_EQ(end(bts + btk, {}), 1699999900.0);
    EXPECT_EQ(end(btk, entry("Ets", text("x"))), -100.0);
    EXPECT_EQ(end({}, entry("Ets", number(0))), 0.0);
    EXPECT_FALSE(end({}, entry("Ets", text("x"))).isValid());
    EXPECT_FALSE(end(entry("Bts", number(0)), {}).isValid());
}

TEST(FieldReport, TimeAndTourHaveFallbacks)
{
    const QByteArray two_attacks =
        attack(entry("Ets", number(5))) + entry(2.0, map({entry("Ets", number(6))}));
    const QByteArray id = entry("id", text("99"));
    const FieldReport without = rows_of(field(two_attacks, {}, id));
    EXPECT_EQ(column_of(without, u"email_time"_s), QVariantList({5.0, 6.0}));
    EXPECT_EQ(column_of(without, u"tour_id"_s), QVariantList({u"99"_s, u"99"_s}));
    const FieldReport with = rows_of(
        field(two_attacks, entry("Ets", number(7)) + self_char(entry("CTK", number(8))), id));
    EXPECT_EQ(column_of(with, u"email_time"_s), QVariantList({7.0, 7.0}));
    EXPECT_EQ(column_of(with, u"tour_id"_s), QVariantList({8.0, 8.0}));
}

TEST(FieldReport, MoreThanAnyMailHoldsIsRefused)
{
    EXPECT_EQ(rows_of(test::field_of_attacks(100, 1'000)).size(), 100);
    EXPECT_THROW(field_in(test::field_of_attacks(data::max_attacks + 1, 0)), data::OversizedMail);
    EXPECT_THROW(field_in(test::field_of_attacks(17, 1'000'000)), data::OversizedMail)
        << "each row repeats the player's name";
    EXPECT_TRUE(field_in(test::field_of_buffs(data::max_buffs_of_hero)));
    EXPECT_THROW(field_in(test::field_of_buffs(data::max_buffs_of_hero + 1)), data::OversizedMail);
}

TEST(FieldReport, MailCutAnywhereIsNoReport)
{
    const QByteArray whole = field(
        attack(entry(
            "CIdt", map({entry("HWBs", map({entry("1", map({entry("Buffs", text("7_0.1"))}))}))}))),
        self_char(entry("HId", number(1))));
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(field_in(QByteArray(whole.constData(), size)));
}

TEST(HeroTexts, SkillsNeedIdAndLevelAndComeByNumber)
{
    const auto skill = [](const QVariant &id, const QVariant &level) {
        return QVariantMap{{u"SkillId"_s, id}, {u"SkillLevel"_s, level}};
    };
    EXPECT_EQ(data::format_skills(QVariantMap{{u"10"_s, skill(1202.0, 3.0)},
                                              {u"2"_s, skill(1201.0, 5)},
                                              {u"3"_s, QVariantMap{{u"SkillId"_s, 7}}},
                                              {u"4"_s, u"no map"_s}}),
              u"#1201 L5; #1202 L3");
    for (const double hostile : test::hostile_numbers)
        EXPECT_EQ(data::format_skills(QVariantMap{{u"1"_s, skill(hostile, 1)}}), u"#0 L1");
}

TEST(HeroTexts, BuffsAreSummedOverAllSlots)
{
    const auto buffs = [](const QStringList &slots) {
        QVariantMap map;
        for (const QString &slot : slots)
            map.insert(QString::number(map.size()), QVariantMap{{u"Buffs"_s, slot}});
        return data::format_buffs(map);
    };
    EXPECT_EQ(buffs({u"1204_0.125;31_0.03"_s}), u"buff1204: 12.5%; buff31: 3.0%");
    EXPECT_EQ(buffs({u"7_0.05"_s, u""_s, u"7_0.1;2_1"_s}), u"buff2: 100.0%; buff7: 15.0%");
    EXPECT_EQ(buffs({u"10_0.1;2_0.1"_s}), u"buff10: 10.0%; buff2: 10.0%");
    EXPECT_EQ(buffs({u"x_1;_1;5;6_;6_x;6_1_2;;_;3000000000_1;7_0.05"_s}), u"buff7: 5.0%");
    EXPECT_EQ(buffs({u"7_9e300"_s}), u"buff7: %1%"_s.arg(QString::number(9e302, 'f', 1)));
    EXPECT_EQ(data::format_buffs(u"7_0.05"_s), u"");
}

/// Numbers before numbers by value, texts before texts by text, and mixed: an order only if the
/// comparison never runs in circles.
TEST(HeroTexts, MixedInscriptionSlotsHaveOneOrder)
{
    const auto affix = [](const QVariant &id) {
        return QVariantMap{{u"Affix"_s, id}};
    };
    QVariantMap slots_map{{u"3"_s, affix(u""_s)},
                          {u"4"_s, QVariantMap()},
                          {u"5"_s, affix(30102.0)},
                          {u"6"_s, affix(u"%1 30021"_s)}};
    for (const char *key : {"10", "9", "9a", "1x", "2", "a", "-1", "", "1.5", "100", "3000000000"})
        slots_map.insert(QString::fromUtf8(key), affix(u"x"_s));
    EXPECT_EQ(data::format_inscriptions(slots_map),
              u"S-1:#x; S2:#x; S5:#30102; S6:#%1 30021; S9:#x; S10:#x; S100:#x; S:#x; S1.5:#x; "
              u"S1x:#x; S3000000000:#x; S9a:#x; Sa:#x");
    EXPECT_EQ(data::format_inscriptions(5), u"");
}
