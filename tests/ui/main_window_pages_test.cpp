#include "services/keep_cooldown_service.h"
#include "support/window_fixture.h"
#include "ui/alerts/barbarian_keep_overlay.h"
#include "ui/alerts/keep_toast.h"
#include "ui/items/item_pictures.h"
#include "ui/parts/emoji_style.h"

#include <QFontDatabase>
#include <QImage>
#include <QMessageBox>
#include <QPainter>

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

TEST(MainWindowPages, TheChainTrackerComesFirstAndIsToldOfToOthers)
{
    WindowFixture fixture;
    fixture.around.clock = [] {
        return 1'700'006'400.0; // 2023-11-15 00:00 UTC
    };
    const ui::MainWindow &window = fixture.open();
    EXPECT_EQ(window.current_tab_title(), u"⚔️ Chain Tracker"_s);
    EXPECT_EQ(window.current_chain_filter(),
              (ui::ChainFilter{1.0, 1'700'006'400.0, 1'700'092'800.0, {}}));
}

TEST(MainWindowPages, StandInTheirOrderAndAreRefreshedTogether)
{
    WindowFixture fixture;
    ui::MainWindow &window = fixture.open();
    QStringList titles;
    for (int page = 0; page < window.tabs().count(); ++page)
        titles << window.tabs().tabText(page);
    EXPECT_EQ(titles,
              (QStringList{u"⚔️ Chain Tracker"_s, u"🛡️ Baulur Run"_s, u"🏰 Fort Rally"_s,
                           u"🗡️ Barbarian Keep"_s, u"🗡️ Field Fights"_s, u"🏹 Rally"_s,
                           u"🏰 Garrison"_s, u"★ Favorites"_s}));
    QSignalSpy ticks(&window.keep_service(), &services::KeepCooldownService::countdownTick);
    ASSERT_TRUE(wait_until([&] { return ticks.count() == 1; })); // of the start
    window.refresh_all_tabs();
    EXPECT_TRUE(wait_until([&] { return ticks.count() == 2; }));
}

TEST(MainWindowPages, TheKeepShowsItsBannerAndItsNotices)
{
    WindowFixture fixture;
    ui::MainWindow &window = fixture.open();
    Q_EMIT window.keep_service().keepReady();
    EXPECT_EQ(shown_windows<ui::BarbarianKeepOverlay>().size(), 1);
    EXPECT_TRUE(services::KeepCooldownService::show_test_notification());
    EXPECT_EQ(shown_windows<ui::KeepToast>().size(), 1);
    fixture.action(u"File/Settings..."_s)->trigger();
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget()->windowTitle(), u"Settings"_s);
    window.request_exit();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->windowFlags().testFlag(Qt::Tool))
            widget->close();
    }
}

TEST(MainWindowPages, WhoTurnsToFieldFightsForTheFirstTimeIsToldThatTheyAreNew)
{
    WindowFixture fixture;
    ui::MainWindow &window = fixture.open();
    window.tabs().setCurrentIndex(3);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    window.tabs().setCurrentIndex(7);
    auto *notice = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    ASSERT_NE(notice, nullptr);
    EXPECT_EQ(notice->windowTitle(), u"Field Fights"_s);
    EXPECT_TRUE(notice->text().startsWith(u"Field Fights is a beta module — the layout"));
    EXPECT_EQ(fixture.setting(u"field_fights_beta_notice_shown"_s), "1");
    notice->accept();
    window.tabs().setCurrentIndex(5);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(MainWindowPages, PicturesAreReadAnewWhenReferenceDataArrives)
{
    WindowFixture fixture;
    ui::MainWindow &window = fixture.open();
    const QString path = fixture.store.folder.filePath(u"icon.png"_s);
    const auto draw = [&path](Qt::GlobalColor colour) {
        QImage picture(4, 4, QImage::Format_RGB32);
        picture.fill(colour);
        picture.save(path);
    };
    draw(Qt::red);
    EXPECT_EQ(ui::icon_picture(path).toImage().pixelColor(0, 0), QColor(Qt::red));
    draw(Qt::blue);
    window.run_post_startup();
    EXPECT_TRUE(wait_until(
        [&path] { return ui::icon_picture(path).toImage().pixelColor(0, 0) == QColor(Qt::blue); }));
}

TEST(EmojiStyle, ACharacterThatAsksForItIsDrawnInColour)
{
    if (!QFontDatabase::families().contains(u"Noto Color Emoji"_s))
        GTEST_SKIP() << "the colour emoji font is not installed";
    const auto colours = [](const QString &text) {
        QImage picture(60, 30, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        QPalette black;
        black.setColor(QPalette::WindowText, Qt::black);
        ui::EmojiStyle().drawItemText(&painter, picture.rect(), Qt::AlignCenter, black, true, text,
                                      QPalette::WindowText);
        int coloured = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                coloured += picture.pixelColor(x, y).hsvSaturation() > 60 ? 1 : 0;
        }
        return coloured;
    };
    EXPECT_GT(colours(u"⚔️ A"_s), 10);
    EXPECT_EQ(colours(u"⚔ A"_s), 0);
}
