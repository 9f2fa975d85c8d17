#include "settings/catalogue.h"
#include "support/window_fixture.h"
#include "ui/logo.h"

#include <QMenu>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

void describe(const QList<QAction *> &actions, const QString &indent, QStringList &lines)
{
    for (const QAction *action : actions) {
        if (action->isSeparator()) {
            lines << indent + u"----"_s;
            continue;
        }
        QString line = indent + action->text();
        if (!action->shortcut().isEmpty())
            line += u" ["_s + action->shortcut().toString(QKeySequence::PortableText) + u']';
        if (!action->isEnabled())
            line += u" off"_s;
        lines << line + (action->isChecked() ? u" *"_s : QString());
        if (action->menu())
            describe(action->menu()->actions(), indent + u' ', lines);
    }
}

const char *const sizes = "   8 pt\n   9 pt\n   10 pt *\n   11 pt\n   12 pt\n   14 pt\n   16 pt\n"
                          "   20 pt\n   22 pt\n   25 pt\n   26 pt\n";

class Menus : public testing::Test {
protected:
    bool checked(const QString &path) { return fixture_.action(path)->isChecked(); }

    WindowFixture fixture_;
};

} // namespace

TEST_F(Menus, StandInTheirOrderWithTheirShortcuts)
{
    QStringList lines;
    describe(fixture_.open().menuBar()->actions(), {}, lines);
    EXPECT_EQ((lines.join(u'\n') + u'\n').toStdString(),
              std::string("&File\n"
                          " Reimport &mailcache... [Ctrl+I]\n"
                          " Open &data folder\n"
                          " &Settings... [Ctrl+,]\n"
                          " ----\n"
                          " E&xit [Ctrl+Q]\n"
                          "&View\n"
                          " Show &Overlay [Ctrl+O]\n"
                          " Overlay options\n"
                          "  Font size\n") +
                  sizes +
                  "  Mode\n"
                  "   Full (vertical) *\n"
                  "   Compact (1 line)\n"
                  "   Compact (2 lines)\n"
                  "  Pin to game window\n"
                  "  ----\n"
                  "  Let clicks through\n"
                  " ----\n"
                  " Honor &Tracker [Ctrl+H]\n"
                  " Tracker options\n"
                  "  Font size\n" +
                  sizes +
                  "  Mode\n"
                  "   Full (vertical) *\n"
                  "  Pin to game window\n"
                  "  ----\n"
                  "  Let clicks through\n"
                  " ----\n"
                  " &Theme\n"
                  "  Dark *\n"
                  "  Light\n"
                  "&Help\n"
                  " Check for &updates...\n"
                  " ----\n"
                  " &About...\n");
}

TEST_F(Menus, StoredOptionsAreChecked)
{
    for (const auto &[key, value] :
         {std::pair(u"overlay_mode"_s, u"compact"_s), std::pair(u"overlay_font_size"_s, u"13"_s),
          std::pair(u"honor_tracker_font_size"_s, u"26"_s),
          std::pair(u"honor_tracker_pinned"_s, u"1"_s), std::pair(u"theme"_s, u"LIGHT"_s)})
        fixture_.store.db.set_setting(key, value);
    fixture_.open();
    EXPECT_TRUE(checked(u"View/Overlay options/Mode/Compact (2 lines)"_s));
    EXPECT_FALSE(checked(u"View/Overlay options/Font size/10 pt"_s));
    EXPECT_TRUE(checked(u"View/Tracker options/Font size/26 pt"_s));
    EXPECT_TRUE(checked(u"View/Tracker options/Pin to game window"_s));
    EXPECT_FALSE(checked(u"View/Overlay options/Pin to game window"_s));
    EXPECT_TRUE(checked(u"View/Theme/Light"_s));
}

TEST_F(Menus, AnUnknownThemeChecksNone)
{
    fixture_.store.db.set_setting(u"theme"_s, u"blue"_s);
    fixture_.open();
    EXPECT_FALSE(checked(u"View/Theme/Dark"_s));
    EXPECT_FALSE(checked(u"View/Theme/Light"_s));
}

TEST_F(Menus, ChosenOptionsAreStored)
{
    fixture_.open();
    for (const QString &path :
         {u"View/Overlay options/Font size/14 pt"_s,
          u"View/Overlay options/Mode/Compact (1 line)"_s,
          u"View/Overlay options/Pin to game window"_s,
          u"View/Overlay options/Let clicks through"_s, u"View/Tracker options/Font size/8 pt"_s,
          u"View/Tracker options/Pin to game window"_s,
          u"View/Tracker options/Pin to game window"_s})
        fixture_.action(path)->trigger();
    EXPECT_EQ(fixture_.setting(u"overlay_font_size"_s), "14");
    EXPECT_EQ(fixture_.setting(u"overlay_mode"_s), "compact1");
    EXPECT_EQ(fixture_.setting(u"overlay_pinned"_s), "1");
    EXPECT_EQ(fixture_.setting(u"overlay_click_through"_s), "1");
    EXPECT_EQ(fixture_.setting(u"honor_tracker_font_size"_s), "8");
    EXPECT_EQ(fixture_.setting(u"honor_tracker_pinned"_s), "0");
}

TEST_F(Menus, OptionsFollowWhatOthersSet)
{
    fixture_.open();
    fixture_.settings.set(settings::overlay_font_size, 20);
    fixture_.settings.set(settings::honor_tracker_pinned, true);
    fixture_.settings.set(settings::theme, u"light"_s);
    EXPECT_TRUE(checked(u"View/Overlay options/Font size/20 pt"_s));
    EXPECT_FALSE(checked(u"View/Overlay options/Font size/10 pt"_s));
    EXPECT_TRUE(checked(u"View/Tracker options/Pin to game window"_s));
    EXPECT_TRUE(checked(u"View/Theme/Light"_s));
}

TEST_F(Menus, AThemeTakesEffectAtOnceAndIsStored)
{
    ui::MainWindow &window = fixture_.open();
    for (const auto &[entry, name, back] : {std::tuple(u"Light"_s, "light", u"#f0f2f5"_s),
                                            std::tuple(u"Dark"_s, "dark", u"#1a1c2e"_s)}) {
        fixture_.action(u"View/Theme/"_s + entry)->trigger();
        EXPECT_EQ(fixture_.setting(u"theme"_s), name);
        window.ensurePolished();
        EXPECT_EQ(window.palette().color(QPalette::Window).name(), back);
    }
}

TEST(Logo, EverySizeIsAPicture)
{
    const QIcon logo = ui::logo();
    for (const int size : {64, 256})
        EXPECT_EQ(logo.pixmap(size).size(), QSize(size, size));
    EXPECT_FALSE(QImage(u":/icons/logo.png"_s).isNull());
}
