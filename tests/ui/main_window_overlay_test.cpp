#include "support/window_fixture.h"
#include "ui/overlay/overlay_window.h"

#include <QApplication>
#include <QPointer>

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

class OverlayOfTheWindow : public testing::Test {
protected:
    static ui::OverlayWindow *overlay() { return shown_windows<ui::OverlayWindow>().value(0); }
    QAction *entry() const { return fixture_.action(u"View/Show Overlay"_s); }
    std::string visible() const { return fixture_.setting(u"overlay_visible"_s); }
    void start()
    {
        fixture_.open().run_post_startup();
        ASSERT_TRUE(wait_until([this] { return fixture_.open_chain().watching(); }));
    }

    WindowFixture fixture_;
};

TEST_F(OverlayOfTheWindow, OpensAndClosesWithItsEntry)
{
    fixture_.open();
    EXPECT_EQ(overlay(), nullptr);
    entry()->trigger();
    ASSERT_NE(overlay(), nullptr);
    EXPECT_EQ(visible(), "1");
    entry()->trigger();
    EXPECT_EQ(overlay(), nullptr);
    EXPECT_EQ(visible(), "0");

    entry()->trigger();
    const QPointer<ui::OverlayWindow> second = overlay();
    second->close();
    EXPECT_FALSE(entry()->isChecked());
    EXPECT_EQ(visible(), "0");
    EXPECT_TRUE(wait_until([&] { return second.isNull(); }));
}

TEST_F(OverlayOfTheWindow, ComesBackAtTheNextStartIfItStoodOpenAtTheEnd)
{
    start();
    EXPECT_EQ(overlay(), nullptr);
    entry()->trigger();
    fixture_.window()->request_exit();
    overlay()->close(); // as the system closes all windows when it ends
    fixture_.destroy();
    EXPECT_EQ(visible(), "1");

    start();
    EXPECT_NE(overlay(), nullptr);
    EXPECT_TRUE(entry()->isChecked());
    fixture_.destroy();
    EXPECT_EQ(overlay(), nullptr);
    EXPECT_EQ(visible(), "1");
}

} // namespace
