#include "field_builders.h"
#include "support/print_qt.h"
#include "ui/field/attack_details.h"

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace tally::ui;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

const QVariantMap full = attack_row({
    {"email_time", 1'740'830'405.0},
    {"n_attacks", 3},
    {"attack_seq", 2},
    {"player_name", u"A&B"_s},
    {"alliance_name", u"AL"_s},
    {"enemy_name", u"%1 Eve"_s},
    {"enemy_alliance", u"EA"_s},
    {"is_kvk", 1},
    {"is_rally", 1},
    {"file_name", u"mail"_s},
    {"email_id", 5.0},
    {"my_kill_score", 3'000'000'000LL},
    {"enemy_kill_score", 1'000},
    {"my_death", 0},
    {"my_power", u"much"_s},
    {"my_ct", 25.0},
    {"my_formation", 3.0},
    {"my_hid", 7.0},
    {"my_hid2", 9.0},
    {"my_hlv", 60.0},
    {"my_hst", 5.0},
    {"my_haw", 1},
    {"my_hss", u"#1 L5"_s},
    {"my_heq", u"1:2_0;"_s},
    {"my_inscriptions", u"S1:#3"_s},
    {"my_hlv2", 50.0},
    {"my_hst2", 0.0},
    {"my_hss2", u"#2 L1"_s},
    {"my_hwbs", u"buff1: 3.0%"_s},
    {"enemy_hid2", 0.0},
});

} // namespace

TEST(AttackDetails, TellAllThatTheRowHolds)
{
    const AttackDetails details = attack_details(full);
    EXPECT_EQ(details.title, u"Field Fight: A&B vs %1 Eve  (attack 2/3)"_s);
    EXPECT_EQ(details.head, u"2025-03-01 12:00:05 UTC [KVK, Rally]"_s);
    EXPECT_EQ(details.outcome, Outcome::Win);
    EXPECT_EQ(details.favorite_key, u"mail"_s);
    EXPECT_EQ(details.ratio, u"KP ratio (my / enemy): 3000000.00"_s);
    const SideDetails &mine = details.mine;
    EXPECT_EQ(mine.title, u"MY: A&B  [AL]"_s);
    EXPECT_EQ(mine.castle, u"Castle L25   Formation: ?3"_s);
    EXPECT_EQ(mine.buffs, u"buff1: 3.0%"_s);
    EXPECT_THAT(mine.losses, ElementsAre(u"3 000 000 000"_s, u"0"_s, u"—"_s, u"—"_s, u"much"_s));
    ASSERT_EQ(mine.heroes.size(), 2u);
    EXPECT_EQ(mine.heroes[0].name, u"H7"_s);
    EXPECT_EQ(mine.heroes[0].level, u"Level 60  ★★★★★ + Awakened"_s);
    EXPECT_EQ(mine.heroes[0].skills, u"#1 L5"_s);
    EXPECT_EQ(mine.heroes[0].equipment, u"1:2_0;"_s);
    EXPECT_EQ(mine.heroes[0].inscriptions, u"S1:#3"_s);
    EXPECT_EQ(mine.heroes[1].level, u"Level 50  "_s);
    EXPECT_EQ(mine.heroes[1].skills, u"#2 L1"_s);
    EXPECT_EQ(details.theirs.title, u"ENEMY: %1 Eve  [EA]"_s);
    EXPECT_EQ(details.theirs.heroes.size(), 1u);
}

TEST(AttackDetails, DoWithoutWhatIsMissing)
{
    const AttackDetails details = attack_details({});
    EXPECT_EQ(details.title, u"Field Fight: ? vs ?"_s);
    EXPECT_EQ(details.head, u"?"_s);
    EXPECT_EQ(details.outcome, Outcome::Draw);
    EXPECT_EQ(details.ratio, u"KP ratio (my / enemy): —"_s);
    EXPECT_EQ(details.theirs.castle, u"Castle L?   Formation: —"_s);
    EXPECT_EQ(details.theirs.buffs, u"(none)"_s);
    ASSERT_EQ(details.theirs.heroes.size(), 1u);
    EXPECT_EQ(details.theirs.heroes[0].name, u"?"_s);
    EXPECT_EQ(details.theirs.heroes[0].level, u"Level ?  "_s);
    EXPECT_EQ(details.theirs.heroes[0].skills, u"(none)"_s);
}

TEST(AttackDetails, AreBoundedAndNamedByTheMailsIdWithoutAFile)
{
    const AttackDetails details =
        attack_details(attack_row({{"file_name", u""_s},
                                   {"email_id", u"id"_s},
                                   {"n_attacks", 1},
                                   {"player_name", QString(1'000'000, u'x')},
                                   {"enemy_hss", QString(1'000'000, u'x')},
                                   {"enemy_hst", 1e9},
                                   {"enemy_hlv", 1e300},
                                   {"enemy_kill_score", 1}}));
    EXPECT_EQ(details.favorite_key, u"id"_s);
    EXPECT_EQ(details.outcome, Outcome::Loss);
    EXPECT_LT(details.title.size(), 1'000);
    EXPECT_LT(details.theirs.heroes[0].skills.size(), 100'000);
    EXPECT_LT(details.theirs.heroes[0].level.size(), 1'000);
}
