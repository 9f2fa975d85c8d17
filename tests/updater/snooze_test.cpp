#include "platform/updater/snooze.h"
#include "support/plain_connection.h"
#include "support/temp_store.h"

#include <gtest/gtest.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;

constexpr double noon = 1'800'000'000.0; // 2027-01-15 08:00 UTC

Clock at(double seconds)
{
    return [seconds] {
        return seconds;
    };
}

TEST(Snooze, LastsADayAndIsThenExpired)
{
    test::TempStore store;
    EXPECT_EQ(snoozed_until(&store.db), std::nullopt);
    EXPECT_FALSE(snooze_expired(&store.db, u"v3"_s, at(noon)));
    snooze_24h(&store.db, u"v3"_s, at(noon));
    EXPECT_EQ(store.db.setting_or(u"update_snoozed_until"_s, {}), u"2027-01-16T08:00:00Z"_s);
    EXPECT_EQ(snoozed_version(&store.db), u"v3"_s);
    const double end = noon + 86'400;
    for (const auto &[moment, latest, is_on] : {std::tuple(noon, u"v3"_s, true),
                                                {end - 0.001, u"v3"_s, true},
                                                {end, u"v3"_s, false},
                                                {end - 1, u"v2"_s, true},
                                                {end - 1, u""_s, true},
                                                {end + 1, u"v2"_s, false}}) {
        EXPECT_EQ(is_snoozed(&store.db, latest, at(moment)), is_on);
        EXPECT_EQ(snooze_expired(&store.db, latest, at(moment)), !is_on);
    }
    for (const double moment : {noon, end}) {
        EXPECT_FALSE(is_snoozed(&store.db, u"v4"_s, at(moment))) << "a newer one ends it";
        EXPECT_FALSE(snooze_expired(&store.db, u"v4"_s, at(moment)));
    }
    clear_snooze(&store.db);
    EXPECT_EQ(store.db.setting_or(u"update_snoozed_version"_s, u"none"_s), u""_s);
    EXPECT_FALSE(is_snoozed(&store.db, u"v3"_s, at(noon)));
    EXPECT_FALSE(snooze_expired(&store.db, u"v3"_s, at(end)));
}

TEST(Snooze, ReadsWhatAnIsoTimeMayLookLike)
{
    test::TempStore store;
    const auto read = [&](const QString &text) {
        store.db.set_setting(u"update_snoozed_until"_s, text);
        const auto until = snoozed_until(&store.db);
        return until ? until->toSecsSinceEpoch() : 0;
    };
    const auto seconds = static_cast<qint64>(noon);
    EXPECT_EQ(read(u"2027-01-15T08:00:00Z"_s), seconds);
    EXPECT_EQ(read(u"2027-01-15T08:00:00.000Z"_s), seconds);
    EXPECT_EQ(read(u"2027-01-15T08:00:00"_s), seconds);
    EXPECT_EQ(read(u"2027-01-15T10:00:00+02:00"_s), seconds);
    EXPECT_EQ(read(u"tomorrow"_s), 0);
    test::PlainConnection(store.path).rows(u"DROP TABLE settings"_s);
    EXPECT_EQ(snoozed_until(&store.db), std::nullopt) << "a store that fails";
}

} // namespace
} // namespace tally::platform::Updater
