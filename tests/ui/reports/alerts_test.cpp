#include "support/print_qt.h"
#include "ui/alerts/barbarian_keep_overlay.h"
#include "ui/alerts/keep_toast.h"
#include "ui/alerts/toast_places.h"

#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QTest>

#include <gmock/gmock.h>

namespace tally::test {
namespace {

using namespace Qt::StringLiterals;
using namespace tally::ui;

TEST(ToastPlaces, PileUpwardsAndThenBeginASecondColumn)
{
    const QRect screen(100, 50, 1280, 720); // right 1379, bottom 769
    EXPECT_EQ(toast_place(0, screen), QPoint(979, 649));
    EXPECT_EQ(toast_place(5, screen), QPoint(979, 109));
    EXPECT_EQ(toast_place(6, screen), QPoint(979 - 388, 649));
    EXPECT_EQ(toast_place(1, QRect(0, 0, 800, 90)), QPoint(799 - 400 - 388, 89 - 120));
}

TEST(BannerPlace, LeavesRoomOnASmallScreen)
{
    EXPECT_EQ(banner_place({0, 0, 1920, 1040}).size(), QSize(720, 200));
    EXPECT_EQ(banner_place({0, 0, 700, 200}), QRect(349 - 310, 99 - 60, 620, 120));
    const QScopedPointer banner(new BarbarianKeepOverlay);
    banner->show_centered();
    EXPECT_EQ(banner->geometry(),
              banner_place(QGuiApplication::primaryScreen()->availableGeometry()));
    const auto *title = banner->findChild<QLabel *>();
    EXPECT_LE(title->sizeHint().width(), banner->width() - 48);
}

TEST(KeepToast, ClosesUpWhenOneOfThreeIsClicked)
{
    QList<QPointer<KeepToast>> toasts;
    for (int i = 0; i < 3; ++i) {
        toasts << new KeepToast(u"title"_s, u"body"_s);
        toasts.back()->show_toast();
    }
    const QPoint second = toasts.at(1)->pos();
    ASSERT_NE(toasts.at(2)->pos(), second);
    QTest::mouseClick(toasts.at(1), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(toasts.at(1).isNull());
    EXPECT_EQ(toasts.at(2)->pos(), second);
    QScreen *screen = QGuiApplication::primaryScreen();
    toasts.at(0)->move(-500, 0); // as on a screen that was larger
    Q_EMIT screen->availableGeometryChanged(screen->availableGeometry());
    EXPECT_EQ(toasts.at(0)->pos(), toast_place(0, screen->availableGeometry()));
    delete toasts.at(0);
    delete toasts.at(2);
}

} // namespace
} // namespace tally::test
