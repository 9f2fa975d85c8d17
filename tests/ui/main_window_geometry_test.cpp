#include "support/window_fixture.h"

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
