#include "support/print_qt.h"
#include "support/window_fixture.h"
#include "ui/parts/window_bounds.h"

#include <QScreen>

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

const QString geometry_key = u"window_geometry_qt"_s;

/// What the window stores when it stands at `frame` and is closed.
QString geometry_text(const QRect &frame)
{
    QWidget widget;
    widget.setGeometry(frame);
    return QString::fromLatin1(widget.saveGeometry().toBase64());
}

class Geometry : public testing::Test {
protected:
    /// Opens the window with what the store holds and waits until it stands as it shall.
    ui::MainWindow &show()
    {
        ui::MainWindow &window = fixture_.open();
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        QCoreApplication::processEvents();
        return window;
    }

    WindowFixture fixture_;
};

} // namespace

TEST_F(Geometry, AWindowOfAScreenThatIsGoneComesUpInTheMiddleOfThePrimaryOne)
{
    fixture_.store.db.set_setting(geometry_key, geometry_text({20'000, 20'000, 600, 400}));
    const ui::MainWindow &window = show();
    const QRect screen = window.screen()->availableGeometry();
    EXPECT_EQ(window.size(), QSize(1400, 900));
    EXPECT_EQ(window.pos(), QPoint(screen.left() + (screen.width() - 1400) / 2,
                                   screen.top() + (screen.height() - 900) / 2));
}

TEST_F(Geometry, ItComesBackWhereItWasClosed)
{
    ui::MainWindow &window = show();
    window.setGeometry(40, 60, 500, 400);
    window.close();
    EXPECT_EQ(fixture_.setting(u"window_maximized"_s), "0");
    EXPECT_EQ(show().geometry(), QRect(40, 60, 500, 400));
}

TEST_F(Geometry, AMaximisedWindowComesBackMaximised)
{
    show().showMaximized();
    fixture_.action(u"File/Exit"_s)->trigger();
    EXPECT_EQ(fixture_.setting(u"window_maximized"_s), "1");
    EXPECT_TRUE(show().isMaximized());
}

TEST_F(Geometry, AStoredTextThatIsNoGeometryIsPassedOver)
{
    for (const QString &text : {u"no base64!"_s, u"AAAA"_s, u"AdnQywADAAAAAA=="_s}) {
        fixture_.store.db.set_setting(geometry_key, text);
        EXPECT_EQ(show().size(), QSize(1400, 900)) << text.toStdString();
    }
}

TEST_F(Geometry, AWindowLargerThanItsScreenStandsOnIt)
{
    fixture_.store.db.set_setting(geometry_key, geometry_text({40, 60, 500, 400}));
    ui::MainWindow &window = fixture_.open();
    window.setGeometry(-300, 700, 3'000, 2'000);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const QRect available = window.screen()->availableGeometry();
    EXPECT_TRUE(wait_until([&] { return available.contains(window.frameGeometry()); }));
}

TEST(BoundedFrame, IsNoLargerThanTheScreenAndOnIt)
{
    const QRect screen(0, 30, 1366, 738);
    EXPECT_EQ(ui::bounded_frame({100, 50, 800, 600}, screen), QRect(100, 50, 800, 600));
    EXPECT_EQ(ui::bounded_frame({-17, -66, 1402, 932}, screen), screen);
    EXPECT_EQ(ui::bounded_frame({900, -500, 800, 600}, screen), QRect(566, 30, 800, 600));
    EXPECT_EQ(ui::bounded_frame({-5, 700, 800, 2'000}, screen), QRect(0, 30, 800, 738));
}
