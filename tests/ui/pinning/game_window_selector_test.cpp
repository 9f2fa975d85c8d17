#include "platform/host/fake/fake_host.h"
#include "support/kept_settings.h"
#include "ui/pinning/game_window_row.h"
#include "ui/pinning/game_window_selector.h"
#include "ui/pinning/pinned_overlay.h"
#include "ui/pinning/window_row_text.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTimer>

#include <gtest/gtest.h>

namespace tally::ui {
namespace {

using platform::GameWindowInfo;

QList<GameWindowInfo> three_windows()
{
    return {{1, 10, QStringLiteral("Rise of Kingdoms"), QStringLiteral("C:\\a\\rok.exe")},
            {2, 20, QStringLiteral("Rise of Kingdoms"), QStringLiteral("D:\\nox\\Nox.exe")},
            {3, 30, QStringLiteral("Rise of Kingdoms"), QString{}}};
}

QList<QRadioButton *> radios_of(const QWidget &dialog)
{
    return dialog.findChildren<QRadioButton *>();
}

int checked_row(const QWidget &dialog)
{
    const auto radios = radios_of(dialog);
    for (int i = 0; i < radios.size(); ++i) {
        if (radios[i]->isChecked())
            return i;
    }
    return -1;
}

TEST(WindowRowText, LongPathsKeepTheirEnd)
{
    const QString whole(89, u'p');
    EXPECT_EQ(shown_path(whole), whole);
    const QString longer = u'x' + whole;
    EXPECT_EQ(shown_path(longer), QStringLiteral("...") + QString(87, u'p'));
}

TEST(WindowRowText, TitlesAndPathsAreShownAsTheyAre)
{
    const GameWindowInfo window{1, 7, QStringLiteral("<img src=x> %3 & %1"),
                                QStringLiteral("C:\\<b>\\%2.exe")};
    const QString shown = QTextDocumentFragment::fromHtml(window_row_html(window)).toPlainText();
    EXPECT_EQ(shown, QStringLiteral("<img src=x> %3 & %1 (native)\nC:\\<b>\\%2.exe\nPID: 7"));
}

TEST(GameWindowSelector, TheLastRowOfTheCurrentImageIsCheckedElseTheFirst)
{
    auto windows = three_windows();
    EXPECT_EQ(checked_row(GameWindowSelector{windows, QStringLiteral("d:\\NOX\\nox.exe")}), 1);
    EXPECT_EQ(checked_row(GameWindowSelector{windows, QStringLiteral("E:\\none.exe")}), 0);
    windows[0].exe_path = windows[1].exe_path;
    EXPECT_EQ(checked_row(GameWindowSelector{windows, windows[1].exe_path}), 1);
}

TEST(GameWindowSelector, IsDrivenByTheKeyboard)
{
    GameWindowSelector dialog{three_windows(), QString{QStringLiteral("C:\\a\\rok.exe")}};
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    ASSERT_EQ(QApplication::focusWidget(), radios_of(dialog)[0]);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(checked_row(dialog), 1);
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.chosen_exe_path(), u"D:\\nox\\Nox.exe");
}

TEST(GameWindowSelector, AClickOnARowsTextChecksIt)
{
    GameWindowSelector dialog{three_windows(), QString{}};
    dialog.show();
    auto *row = dialog.findChildren<GameWindowRow *>()[2];
    QTest::mouseClick(row->findChild<QLabel *>(), Qt::LeftButton);
    EXPECT_EQ(checked_row(dialog), 2);
}

TEST(GameWindowSelector, WithoutAnyRowSelectLeavesItOpen)
{
    GameWindowSelector dialog{{}, QString{}};
    dialog.show();
    QTest::mouseClick(dialog.findChildren<QPushButton *>()[1], Qt::LeftButton);
    EXPECT_TRUE(dialog.isVisible());
}

TEST(GameWindowSelector, EveryControlHasANameAndNoTextIsCutOff)
{
    auto windows = three_windows();
    windows[0].exe_path = QStringLiteral("C:\\") + QString(200, u'w') + QStringLiteral("\\rok.exe");
    GameWindowSelector dialog{windows, QString{}};
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    for (const QRadioButton *radio : radios_of(dialog))
        EXPECT_FALSE(radio->accessibleName().isEmpty());
    for (const QPushButton *button : dialog.findChildren<QPushButton *>())
        EXPECT_FALSE(button->accessibleName().isEmpty());
    const auto *scroll = dialog.findChild<QScrollArea *>();
    EXPECT_FALSE(scroll->accessibleName().isEmpty());
    EXPECT_LE(scroll->widget()->width(), scroll->viewport()->width());
    for (const QLabel *label : dialog.findChildren<QLabel *>())
        EXPECT_GE(label->height(), label->heightForWidth(label->width()))
            << label->text().toStdString();
}

TEST(PinnedOverlay, APinAmongSeveralAsksFirstAndOutlivesNoOverlay)
{
    platform::FakeHost host;
    host.windows = {{1, u"Rise of Kingdoms", 10}, {2, u"Rise of Kingdoms", 20}};
    host.processes[20].image_path = u"D:\\second.exe";
    test::KeptSettings kept;
    PinState pin{host, honor_pin, kept.settings};
    auto overlay = std::make_unique<QWidget>();
    QTimer timer;
    const auto dialog = [&] {
        return overlay->findChild<GameWindowSelector *>();
    };

    QTimer::singleShot(0, overlay.get(), [&] {
        radios_of(*dialog())[1]->setChecked(true);
        QTest::keyClick(dialog(), Qt::Key_Return);
    });
    set_overlay_pinned(pin, true, *overlay, timer);
    EXPECT_EQ(kept.texts[QStringLiteral("honor_tracker_pin_target_exe")], u"D:\\second.exe");
    EXPECT_TRUE(timer.isActive());
    EXPECT_EQ(timer.interval(), pin_interval_ms);
    set_overlay_pinned(pin, false, *overlay, timer);
    EXPECT_FALSE(timer.isActive());

    QTimer::singleShot(0, qApp, [&] { overlay.reset(); });
    EXPECT_FALSE(select_game_window(pin, find_game_windows(host), *overlay));
    EXPECT_FALSE(timer.isActive());
}

} // namespace
} // namespace tally::ui
