#include "data/mail/trial_report.h"

#include "mail_encoder.h"
#include "support/hostile_numbers.h"
#include "support/print_qt.h"

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::sample;
using namespace Qt::StringLiterals;
using data::TrialParticipant;
using data::TrialReport;

namespace {

constexpr std::optional<TrialReport> (*trial_in)(QByteArrayView) = data::parse_trial;

QByteArray trial(const QByteArray &infos, const QByteArray &content = {},
                 const QByteArray &root = {}, const char *type = "BarCanyonKillBoss")
{
    return mail(entry("type", text(type)) + root +
                entry("body", map({entry("content", map(content + entry("infos", map(infos))))})));
}

QByteArray someone(const QByteArray &facts = entry("name", text("Ada")))
{
    return entry(1.0, map(facts));
}

TrialReport report_of(const QByteArray &content, const QByteArray &root = {})
{
    const auto report = trial_in(trial(someone(), content, root));
    EXPECT_TRUE(report);
    return report.value_or(TrialReport());
}

TrialParticipant participant_of(const QByteArray &facts)
{
    const auto report = trial_in(trial(someone(facts)));
    EXPECT_TRUE(report);
    return report ? report->participants.at(0) : TrialParticipant();
}

QByteArray pos(const QByteArray &x, const QByteArray &y)
{
    return entry("pos", map(entry("x", x) + entry("y", y)));
}

} // namespace

TEST(TrialReport, RefusesWhatIsNoBossKill)
{
    EXPECT_TRUE(trial_in(trial(someone())));
    EXPECT_FALSE(trial_in({}));
    EXPECT_FALSE(trial_in(trial(someone(), {}, {}, "barCanyonKillBoss")));
    EXPECT_FALSE(trial_in(trial({})));
    EXPECT_FALSE(trial_in(trial(entry(1.0, map()) + entry(2.0, text("x")))));
    EXPECT_FALSE(
        trial_in(mail(entry("type", text("BarCanyonKillBoss")) + entry("body", number(1)))));
    // The type counts only at the root.
    EXPECT_FALSE(trial_in(
        mail(entry("a", map(entry("type", text("BarCanyonKillBoss")))) +
             entry("body", map({entry("content", map({entry("infos", map(someone()))}))})))));
    EXPECT_FALSE(data::parse_trial(u"/no/such/file"_s));
}

TEST(TrialReport, BossFactsAreReadOrTakeTheirDefaults)
{
    const TrialReport report =
        report_of(entry("eliteBarName", text("Baulur")) + entry("npcType", number(5)) +
                      entry("npcLevel", small_value(3)) + pos(number(1503), number(-1503)),
                  entry("id", number(12345678901234)) + entry("time", number(1.7e15)));
    EXPECT_EQ(report.mail_id, u"12345678901234");
    EXPECT_EQ(report.boss_name, u"Baulur");
    EXPECT_EQ(report.npc_type, 5.0);
    EXPECT_EQ(report.npc_level, 3.0);
    EXPECT_EQ(report.tile_x, 251);
    EXPECT_EQ(report.tile_y, -251);
    EXPECT_EQ(report.event_time, 1.7e9);
    const TrialReport odd =
        report_of(entry("npcType", map()) + entry("npcLevel", text("x")) +
                      entry("pos", map({entry("X", number(60)), entry("y", number(60))})),
                  entry("time", map()));
    EXPECT_EQ(odd.npc_type, std::nullopt);
    EXPECT_EQ(odd.npc_level, 0.0);
    EXPECT_EQ(odd.tile_x, 0);
    EXPECT_EQ(odd.tile_y, 10);
    EXPECT_EQ(odd.event_time, 0.0);
    EXPECT_EQ(report_of({}).tile_x, std::nullopt);
}

TEST(TrialReport, ParticipantsKeepTheOrderOfTheirKeyTexts)
{
    const auto named = [](double key, const char *name) {
        return entry(key, map({entry("name", text(name))}));
    };
    const auto report =
        trial_in(trial(named(2, "two") + named(10, "ten") + entry(3.0, map()) + named(1, "one")));
    ASSERT_TRUE(report);
    QStringList names;
    for (const TrialParticipant &participant : report->participants)
        names << participant.player_name;
    EXPECT_EQ(names, QStringList({u"one"_s, u"ten"_s, u"two"_s}));
}

TEST(TrialReport, ParticipantFactsAreRead)
{
    const QByteArray item = map({entry("Type", number(4)), entry("Value", text("x"))});
    const TrialParticipant full =
        participant_of(entry("playerId", number(77)) + entry("name", text("Ada")) +
                       entry("damageRate", number(0.25)) + entry("order", number(2.9)) +
                       entry("loots", map(entry(1.0, item) + entry(2.0, map()))));
    EXPECT_EQ(full.player_id, 77.0);
    EXPECT_EQ(full.player_name, u"Ada");
    EXPECT_EQ(full.damage_rate, 0.25);
    EXPECT_EQ(full.order_, 2);
    ASSERT_EQ(full.loot.size(), 1U);
    EXPECT_EQ(full.loot[0].item_type, 4.0);
    EXPECT_EQ(full.loot[0].item_subtype, std::nullopt);
    EXPECT_EQ(full.loot[0].value, 0.0);
    const TrialParticipant bare = participant_of(entry("other", number(1)));
    EXPECT_EQ(bare.player_id, std::nullopt);
    EXPECT_EQ(bare.damage_rate, 0.0);
}

TEST(TrialReport, NumbersThatNoIntHoldsCountAsMissing)
{
    for (const double hostile : test::hostile_numbers) {
        EXPECT_EQ(participant_of(entry("order", number(hostile))).order_, 0) << hostile;
        const TrialReport report = report_of(pos(number(hostile * 6), number(6)));
        EXPECT_EQ(report.tile_x, std::nullopt) << hostile;
        EXPECT_EQ(report.tile_y, 1);
    }
    EXPECT_EQ(participant_of(entry("order", number(-2147483648.9))).order_, -2147483648);
}
