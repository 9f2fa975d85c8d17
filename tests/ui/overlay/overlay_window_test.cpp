#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"
#include "ui/items/reference_icons.h"
#include "ui/overlay/overlay_source.h"
#include "ui/overlay/overlay_window.h"

#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace tally::ui {
namespace {

using namespace Qt::StringLiterals;
using test::battle;
using test::battle_round;
using test::item;

constexpr double noon = 1'740'830'400.0; // 2025-03-01 12:00 UTC

class Source final : public OverlaySource {
public:
    std::optional<ChainFilter> filter;
    QString tab;

    std::optional<ChainFilter> current_chain_filter() const override { return filter; }
    QString current_tab_title() const override { return tab; }
};

class Overlay : public testing::Test {
protected:
    Overlay()
    {
        host_.own_pid = 1;
        host_.windows = {{2, u"Rise of Kingdoms", 20, {100, 50, 1000, 600, true}},
                         {3, u"Mail", 30}};
        host_.foreground = 2;
    }

    OverlayWindow &open()
    {
        overlay_.reset();
        overlay_ = std::make_unique<OverlayWindow>(Surroundings{.db = store_.db,
                                                                .queries = queries_,
                                                                .settings = settings_,
                                                                .host = host_,
                                                                .icon_dir = icons_.folder()},
                                                   &source_, 1.0);
        return *overlay_;
    }
    void set(const QString &key, const QString &text) { store_.db.set_setting(key, text); }
    std::string setting(const QString &key)
    {
        return store_.db.setting_or(key, u"<none>"_s).toStdString();
    }
    void refresh() { QMetaObject::invokeMethod(overlay_.get(), "refresh_data"); }
    void tick() { QMetaObject::invokeMethod(overlay_.get(), "pin_tick"); }
    void add_chain(double start, double pieces)
    {
        store_.db.insert_report(u"Persistent.Mail.%1"_s.arg(start),
                                battle(start, {battle_round(1.0, {item(4.0, 1.0, pieces)})}),
                                start);
    }
    void drag(QPoint by, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(overlay_.get(), button, {}, {2, 2});
        QMouseEvent move(QEvent::MouseMove, QPoint(2, 2) + by, overlay_->pos() + QPoint(2, 2) + by,
                         Qt::NoButton, button, {});
        QCoreApplication::sendEvent(overlay_.get(), &move);
        QTest::mouseRelease(overlay_.get(), button, {}, {2, 2});
    }

    QList<QLabel *> labels() const
    {
        QList<QLabel *> shown;
        for (QLabel *label : overlay_->findChildren<QLabel *>()) {
            if (label->isVisibleTo(overlay_.get()))
                shown << label;
        }
        return shown;
    }
    std::string texts() const
    {
        QStringList all;
        for (const QLabel *label : labels())
            all << (label->pixmap().isNull() ? label->text() : u"*"_s);
        all.sort();
        return all.join(u'|').toStdString();
    }

    ReferenceIcons icons_;
    test::TempStore store_;
    queries::StoreQueries queries_{store_.db, std::chrono::seconds(20)};
    Settings settings_{store_.db};
    platform::FakeHost host_;
    Source source_;
    std::unique_ptr<OverlayWindow> overlay_;
};

TEST_F(Overlay, EachModeShowsItsFiguresAtOnce)
{
    open();
    EXPECT_EQ(texts(), "0|0|0|0|0|0 (0.0%)|0.00|0.000 d|0.000 d|0.000 d|Animal Bone:|Barbs/AP:|"
                       "Chains:|Crystals:|Ebony:|Filter: all time|Gems:|Healing:|Honor:|Iron Ore:|"
                       "Leather:|Materials|N:0 | A:0 (L: 0.000)|N:0 | A:0 (L: 0.000)|"
                       "N:0 | A:0 (L: 0.000)|N:0 | A:0 (L: 0.000)|"
                       "Right-click for menu · drag to move|Rounds:|Speeds (days)|Statistics|"
                       "Tallyhand|Training:|Universal:|Wins:|✕");
    for (const int mode : {1, 2}) {
        overlay_->set_mode(mode);
        EXPECT_EQ(texts(), "0|0|0|0|0.00|0.000|0.000|0.000|0.000|0.000 d|0.000 d|0.000 d|Avg:|"
                           "Honor:|Kill:|✕");
    }
}

TEST_F(Overlay, FiguresFollowReportsFilterSourceAndReferenceData)
{
    source_.tab = u"Forts"_s;
    open().set_mode(1);
    add_chain(noon, 7.0);
    add_chain(noon + 86'400, 50.0);
    refresh();
    EXPECT_TRUE(texts().starts_with("0|0|0.000|")) << "of items that nobody knows " << texts();
    EXPECT_NE(texts().find("1.00|2|"), std::string::npos) << texts();

    icons_.index(u"loot"_s, u"crystals"_s);
    data::MasterCache::instance().set_kind(
        u"items"_s,
        {{u"items"_s, QVariantMap{{u"4.0_1.0"_s, QVariantMap{{u"name"_s, u"Crystal"_s},
                                                             {u"unit"_s, u"crystals"_s}}}}}});
    refresh();
    EXPECT_NE(texts().find("|57|"), std::string::npos) << texts();
    EXPECT_EQ(texts().find('*'), std::string::npos);
    icons_.write_broken(u"crystals"_s);
    refresh();
    QFile::remove(icons_.file(u"crystals"_s));
    refresh();
    icons_.write(u"crystals"_s, Qt::red);
    refresh();
    EXPECT_NE(texts().find('*'), std::string::npos) << "a file may come after the tables";

    source_.filter = ChainFilter{1.0, noon, noon + 60, {}};
    refresh();
    EXPECT_NE(texts().find("|7|"), std::string::npos) << texts();
    store_.db.free_ap_mode = 2;
    refresh();
    EXPECT_EQ(texts().find("|7|"), std::string::npos) << texts();
    overlay_->set_mode(0);
    EXPECT_NE(texts().find("Filter: 2025-03-01 12:00 → 2025-03-01 12:00  ·  Forts"),
              std::string::npos);
}

TEST_F(Overlay, AStoreThatFailsLeavesTheFiguresStanding)
{
    add_chain(noon, 7.0);
    open().set_mode(1);
    const std::string before = texts();
    test::PlainConnection(store_.path).rows(u"ALTER TABLE reports RENAME TO gone"_s);
    refresh();
    EXPECT_EQ(texts(), before);
}

TEST_F(Overlay, OpensAsItWasStored)
{
    struct Stored {
        QString mode;
        int lines; ///< 0: full
        QString size;
        int icon;
    };
    icons_.add(u"loot"_s, u"gems"_s, Qt::red);
    for (const auto &[mode, lines, size, icon] : {Stored{u"compact"_s, 2, u"8"_s, 20},
                                                  {u"compact1"_s, 1, u"26"_s, 34},
                                                  {u"compact2"_s, 2, u"13"_s, 20},
                                                  {u"wide"_s, 0, u"12"_s, 0},
                                                  {u"full"_s, 0, u"x"_s, 0}}) {
        set(u"overlay_mode"_s, mode);
        set(u"overlay_font_size"_s, size);
        open();
        int side = 0;
        for (const QLabel *label : labels())
            side = std::max(side, label->pixmap().deviceIndependentSize().toSize().width());
        EXPECT_EQ(side, icon) << mode.toStdString();
        overlay_->show();
        QSet<int> heights;
        for (const QLabel *label : labels()) {
            if (label->text() == u"0.000" || label->text() == u"✕")
                heights << label->mapTo(overlay_.get(), label->rect().center()).y() / 8;
        }
        EXPECT_EQ(heights.size(), std::max(lines, 1)) << mode.toStdString();
        EXPECT_EQ(setting(u"overlay_mode"_s), mode.toStdString());
    }
    EXPECT_EQ(overlay_->windowFlags() & ~Qt::WindowFlags(Qt::WindowTransparentForInput),
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
}

TEST_F(Overlay, OptionsAreSetHereOrInTheSettings)
{
    OverlayWindow &overlay = open();
    QSignalSpy writes(&settings_, &Settings::changed);
    overlay.set_mode(0);
    overlay.set_font_size(10);
    EXPECT_TRUE(writes.isEmpty());
    overlay.set_mode(2);
    overlay.set_font_size(26);
    EXPECT_EQ(setting(u"overlay_mode"_s) + setting(u"overlay_font_size"_s), "compact226");
    EXPECT_EQ(writes.size(), 2);
    const int wide = overlay.width();
    settings_.set(settings::overlay_font_size, 8);
    EXPECT_LT(overlay.width(), wide);
    settings_.set(settings::overlay_mode, u"full"_s);
    EXPECT_NE(texts().find("Materials"), std::string::npos);
    settings_.set(settings::overlay_pinned, true);
    tick();
    EXPECT_EQ(overlay.pos(), QPoint(100, 80)) << "where it stood, as near as the game reaches";
    settings_.set(settings::overlay_click_through, true);
    EXPECT_TRUE(overlay.windowFlags().testFlag(Qt::WindowTransparentForInput));
}

TEST_F(Overlay, KeepsTheColoursOfItsTheme)
{
    set(u"theme"_s, u"light"_s);
    const auto colours = [this](QWidget &overlay) {
        const QImage picture = overlay.grab().toImage();
        return picture.pixelColor(0, 9).name() + picture.pixelColor(4, 4).name();
    };
    EXPECT_EQ(colours(open()), u"#5865f2#f5f5f7"_s);
    settings_.set(settings::theme, u"dark"_s);
    qApp->setStyleSheet(u"QWidget { background-color: #123456; color: #fedcba; }"_s);
    EXPECT_EQ(colours(*overlay_), u"#5865f2#f5f5f7"_s);
    auto *words = new QLabel(new QDialog(overlay_.get()));
    words->ensurePolished();
    EXPECT_EQ(words->palette().color(QPalette::WindowText).name(), u"#fedcba"_s);
    EXPECT_EQ(colours(open()), u"#5865f2#1e1e2e"_s);
    qApp->setStyleSheet({});
}

TEST_F(Overlay, ClosingIsRememberedUnlessTheProgramEnds)
{
    for (const bool persist : {false, true}) {
        set(u"overlay_visible"_s, u"1"_s);
        open().set_persist_visibility_on_close(persist);
        overlay_->show();
        QSignalSpy closed(overlay_.get(), &OverlayWindow::overlayClosed);
        QLabel *cross = nullptr;
        for (QLabel *label : labels())
            cross = label->text() == u"✕" ? label : cross;
        QTest::mousePress(cross, Qt::LeftButton);
        EXPECT_FALSE(overlay_->isVisible());
        EXPECT_EQ(closed.size(), 1);
        EXPECT_EQ(setting(u"overlay_visible"_s), persist ? "0" : "1");
        add_chain(noon, 1.0);
        const std::string before = texts();
        refresh();
        EXPECT_EQ(texts(), before);
    }
}

TEST_F(Overlay, IsDraggedAndRemembersWhere)
{
    set(u"overlay_x"_s, u"300"_s);
    set(u"overlay_y"_s, u"5000"_s); // of a screen that is gone
    open().set_mode(1);
    overlay_->show();
    EXPECT_EQ(overlay_->pos(), QPoint(0, 0));
    drag({150, 60});
    EXPECT_EQ(overlay_->pos(), QPoint(150, 60));
    EXPECT_EQ(setting(u"overlay_x"_s) + '/' + setting(u"overlay_y"_s), "150/60");
    drag({9, 9}, Qt::RightButton);
    EXPECT_EQ(overlay_->pos(), QPoint(150, 60));

    overlay_->set_pinned(true);
    EXPECT_EQ(setting(u"overlay_pin_off_x"_s) + '/' + setting(u"overlay_pin_off_y"_s), "50/10");
    drag({30, 5});
    tick();
    EXPECT_EQ(overlay_->pos(), QPoint(180, 65));
    EXPECT_EQ(setting(u"overlay_pin_off_x"_s) + '/' + setting(u"overlay_x"_s), "80/150");

    QTest::mousePress(overlay_.get(), Qt::LeftButton, {}, {2, 2});
    QContextMenuEvent wish(QContextMenuEvent::Mouse, {5, 5}, overlay_->pos());
    QCoreApplication::sendEvent(overlay_.get(), &wish); // the release is the menu's
    host_.windows[0].rect.x += 10;
    tick();
    EXPECT_EQ(overlay_->pos(), QPoint(190, 65));
}

TEST_F(Overlay, ItsMenuHoldsItsOptions)
{
    open().show();
    for (const bool several : {false, true}) {
        if (several)
            host_.windows.push_back({4, u"Rise of Kingdoms", 40});
        QContextMenuEvent wish(QContextMenuEvent::Mouse, {5, 5}, overlay_->pos());
        QCoreApplication::sendEvent(overlay_.get(), &wish);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        EXPECT_EQ(menu->actions().at(5)->isEnabled(), several);
        menu->actions().at(2)->menu()->actions().at(1)->trigger();
        EXPECT_EQ(setting(u"overlay_mode"_s), "compact1");
        menu->close();
    }
}

TEST_F(Overlay, FollowsTheGameFromScreenToScreen)
{
    set(u"overlay_pinned"_s, u"1"_s);
    open().show();
    const auto settles_at = [this](QPoint where) {
        tick(); // to the screen, in the pixels of the other
        tick();
        EXPECT_EQ(overlay_->pos(), where);
        tick();
        EXPECT_EQ(overlay_->pos(), where);
    };
    settles_at({120, 130});
    const int enumerations = host_.enumerations;
    host_.windows[0].rect = {1800, 50, 2000, 1200, true};
    settles_at({1600 + 100 + 20, 25 + 80});
    EXPECT_EQ(overlay_->screen()->devicePixelRatio(), 2.0);
    host_.windows[0].rect = {100, 50, 1000, 600, true};
    settles_at({120, 130});
    EXPECT_EQ(host_.enumerations, enumerations);
    host_.foreground = 3;
    tick();
    EXPECT_FALSE(overlay_->isVisible());
    host_.foreground = 2;
    tick();
    EXPECT_TRUE(overlay_->isVisible());
}

} // namespace
} // namespace tally::ui
