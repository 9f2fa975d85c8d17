#include "ui/loading_splash.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QPointer>
#include <QTest>
#include <QtTest/qtestspontaneevent.h>

#include <gtest/gtest.h>

using namespace tally;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QPointer<ui::LoadingSplash> shown_splash(std::chrono::milliseconds minimum)
{
    QPointer splash(new ui::LoadingSplash(nullptr, u"Loading..."_s, minimum));
    splash->show();
    return splash;
}

bool gone(const QPointer<ui::LoadingSplash> &splash)
{
    return QTest::qWaitFor([&splash] { return splash.isNull(); }, 30'000);
}

} // namespace

TEST(LoadingSplash, NeitherEscapeNorTheWindowManagerClosesIt)
{
    const auto splash = shown_splash(0ms);
    QTest::keyClick(splash, Qt::Key_Escape);
    EXPECT_TRUE(splash->isVisible());
    QCloseEvent by_the_user;
    QSpontaneKeyEvent::setSpontaneous(&by_the_user);
    qApp->notify(splash, &by_the_user); // `sendEvent` would take it for one of our own
    EXPECT_FALSE(by_the_user.isAccepted());
    EXPECT_TRUE(splash->isVisible());
    splash->finish();
    EXPECT_TRUE(gone(splash));
}

TEST(LoadingSplash, ItStandsItsMinimumAndThenCloses)
{
    const auto splash = shown_splash(300ms);
    splash->finish();
    EXPECT_TRUE(splash->isVisible());
    EXPECT_TRUE(gone(splash));
}

TEST(LoadingSplash, AMarkupInAStatusIsShownAsItStands)
{
    const auto splash = shown_splash(0ms);
    splash->set_status(u"<b>x</b>"_s);
    for (const QLabel *label : splash->findChildren<QLabel *>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    splash->finish();
    EXPECT_TRUE(gone(splash));
}
