#include "platform/updater/snooze.h"
#include "support/temp_store.h"

#include <gtest/gtest.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;

constexpr double start = 1'800'000'000.0; // 2027-01-15 08:00 UTC

Clock at(double seconds)
{
    return [seconds] {
        return seconds;
    };
}

TEST(Snooze, LastsADayForItsVersionAndIsThenExpired)
{
    test::TempStore store;
    snooze_24h(&store.db, u"v3"_s, at(start));
    EXPECT_EQ(store.db.setting_or(u"update_snoozed_until"_s, {}), u"2027-01-16T08:00:00Z"_s);
    const double end = start + 86'400;
    for (const auto &[moment, latest, snoozed, expired] : {std::tuple(start, u"v3"_s, true, false),
                                                           {end - 0.001, u"v3"_s, true, false},
                                                           {end, u"v3"_s, false, true},
                                                           {end, u"v2"_s, false, true},
                                                           {end - 1, u""_s, true, false},
                                                           {start, u"v4"_s, false, false},
                                                           {end, u"v4"_s, false, false}}) {
        EXPECT_EQ(is_snoozed(&store.db, latest, at(moment)), snoozed);
        EXPECT_EQ(snooze_expired(&store.db, latest, at(moment)), expired);
    }
    clear_snooze(&store.db);
    EXPECT_EQ(snoozed_version(&store.db), QString());
    EXPECT_FALSE(snooze_expired(&store.db, u"v3"_s, at(end)));
}

TEST(Snooze, ReadsWhatAnIsoTimeMayLookLike)
{
    test::TempStore store;
    for (const QString &text : {u"2027-01-15T08:00:00.000Z"_s, u"2027-01-15T08:00:00"_s,
                                u"2027-01-15T10:00:00+02:00"_s}) {
        store.db.set_setting(u"update_snoozed_until"_s, text);
        EXPECT_EQ(snoozed_until(&store.db), QDateTime::fromSecsSinceEpoch(1'800'000'000));
    }
    store.db.set_setting(u"update_snoozed_until"_s, u"tomorrow"_s);
    EXPECT_EQ(snoozed_until(&store.db), std::nullopt);
}

} // namespace
} // namespace tally::platform::Updater
