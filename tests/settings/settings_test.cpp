#include "settings/catalogue.h"
#include "support/kept_settings.h"
#include "support/plain_connection.h"
#include "support/temp_store.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

/// What a stored text means to the setting.
template <typename T>
T meaning(const Setting<T> &setting, const QString &text)
{
    KeptSettings kept;
    kept.texts.insert(QLatin1StringView(setting.key), text);
    return kept.settings.get(setting);
}

/// What is heard of a setting's changes.
template <typename T>
QList<T> &hear(const Settings &settings, const Setting<T> &setting, QList<T> &heard)
{
    settings.on_change(setting, &settings, [&heard](const T &value) { heard << value; });
    return heard;
}

} // namespace

TEST(Settings, WhatAHandMayHaveWrittenIsCheckedAndBounded)
{
    for (const auto &[text, hours] :
         {std::pair(u"24"_s, 24), std::pair(u" 7 "_s, 7), std::pair(u"0"_s, 68),
          std::pair(u"-3"_s, 68), std::pair(u"abc"_s, 68), std::pair(u""_s, 68),
          std::pair(u"99999999999"_s, 68), std::pair(u"2.5"_s, 68)})
        EXPECT_EQ(meaning(settings::keep_cooldown_hours, text), hours) << text.toStdString();
    EXPECT_EQ(meaning(settings::overlay_x, u"-1920"_s), -1920);
    EXPECT_EQ(meaning(settings::overlay_x, u"2147483647"_s), 80);

    for (const auto &[text, visible, notifies] :
         {std::tuple(u"1"_s, true, true), std::tuple(u"0"_s, false, false),
          std::tuple(u"yes"_s, false, true), std::tuple(u""_s, false, true)}) {
        EXPECT_EQ(meaning(settings::honor_tracker_visible, text), visible) << text.toStdString();
        EXPECT_EQ(meaning(settings::keep_notify_enabled, text), notifies) << text.toStdString();
    }

    EXPECT_EQ(meaning(settings::theme, {}), u"");
    EXPECT_EQ(meaning(settings::theme, QString(100'000, u'x')), u"dark");
}

TEST(Settings, WithoutARowTheDefaultHolds)
{
    TempStore store;
    const Settings settings(store.db);
    EXPECT_TRUE(settings.is_absent(settings::mailcache_dir));
    EXPECT_EQ(settings.get(settings::mailcache_dir), u"");
    EXPECT_EQ(settings.get_or(settings::mailcache_dir, u"/home"_s), u"/home");
    EXPECT_TRUE(settings.get(settings::honor_tracker_visible));
    EXPECT_EQ(settings.get(settings::keep_notify_before_hours), u"5,3,1");
}

TEST(Settings, WhatIsSetIsStoredAndToldOnceToThoseWhomItConcerns)
{
    TempStore store;
    Settings settings(store.db);
    QList<int> sizes;
    QList<bool> pins;
    hear(settings, settings::overlay_font_size, sizes);
    hear(settings, settings::overlay_pinned, pins);
    settings.set(settings::overlay_font_size, 14);
    settings.set(settings::overlay_font_size, 14);
    settings.set(settings::honor_tracker_font_size, 8);
    settings.set(settings::overlay_pinned, true);
    EXPECT_EQ(sizes, QList<int>{14});
    EXPECT_EQ(pins, QList<bool>{true});
    EXPECT_EQ(store.db.get_setting(u"overlay_font_size"_s), u"14"_s);
    EXPECT_EQ(store.db.get_setting(u"overlay_pinned"_s), u"1"_s);

    settings.set(settings::mailcache_dir, {});
    EXPECT_FALSE(settings.is_absent(settings::mailcache_dir));
    EXPECT_EQ(settings.get_or(settings::mailcache_dir, u"/home"_s), u"");
}

TEST(Settings, AStoreThatFailsCostsTheSettingOnly)
{
    TempStore store;
    Settings settings(store.db);
    QList<QString> themes;
    hear(settings, settings::theme, themes);
    PlainConnection(store.path).rows(u"DROP TABLE settings"_s);
    settings.set(settings::theme, u"light"_s);
    EXPECT_EQ(themes, QList<QString>{u"light"_s}) << "it holds for this run";
    EXPECT_EQ(settings.get(settings::theme), u"dark");
    EXPECT_FALSE(settings.is_absent(settings::mailcache_dir)) << "nobody knows";
}
