#include "state_shots.h"

#include "album.h"
#include "data/store/tally_db.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "settings/settings.h"
#include "ui/main_window.h"
#include "ui/pinning/game_window_selector.h"
#include "ui/report_tabs.h"
#include "ui/start_up_chain.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDateEdit>
#include <QHoverEvent>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QTabBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimeEdit>
#include <QToolTip>

namespace tally::tools {
namespace {

template <typename Widget>
Widget *named(const QWidget &window, const QString &accessible_name)
{
    for (Widget *widget : window.findChildren<Widget *>()) {
        if (widget->accessibleName() == accessible_name)
            return widget;
    }
    return nullptr;
}

QPixmap over(const QWidget &window, QWidget &popup)
{
    QPixmap picture = const_cast<QWidget &>(window).grab();
    QPainter(&picture).drawPixmap(window.mapFromGlobal(popup.pos()), popup.grab());
    return picture;
}

void hover(QWidget &widget, QPoint at)
{
    widget.setAttribute(Qt::WA_UnderMouse);
    QHoverEvent enter(QEvent::HoverEnter, at, widget.mapToGlobal(at), QPointF(-1, -1));
    QCoreApplication::sendEvent(&widget, &enter);
    QHoverEvent move(QEvent::HoverMove, at, widget.mapToGlobal(at), QPointF(-1, -1));
    QCoreApplication::sendEvent(&widget, &move);
}

QPixmap tool_tip(QWidget &window)
{
    QToolTip::showText(window.mapToGlobal(QPoint(300, 200)), QStringLiteral("Previous day (-1)"),
                       &window);
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->windowType() == Qt::ToolTip) {
            widget->show();
            return widget->grab();
        }
    }
    return {};
}

} // namespace

void take_states(const Album &album, ui::MainWindow &window)
{
    auto *date = named<QDateEdit>(window, QStringLiteral("From date (UTC)"));
    date->setFocus();
    QWidget *calendar = date->calendarWidget()->window();
    calendar->move(date->mapToGlobal(QPoint(0, date->height())));
    calendar->resize(calendar->sizeHint());
    calendar->show();
    QCoreApplication::processEvents();
    album.add(QStringLiteral("state-calendar"), over(window, *calendar));
    calendar->hide();

    auto *combo = named<QComboBox>(window, QStringLiteral("AP source"));
    combo->setFocus();
    combo->showPopup();
    QCoreApplication::processEvents();
    album.add(QStringLiteral("state-combo"), over(window, *combo->view()->window()));
    combo->hidePopup();
    album.add(QStringLiteral("state-tip"), tool_tip(window));
    QToolTip::hideText();

    auto *pairs = named<QListWidget>(window, QStringLiteral("Hero pairs"));
    auto *loot = named<QTableView>(window, QStringLiteral("Loot"));
    pairs->setCurrentRow(0);
    loot->selectRow(1);
    loot->setFocus();
    hover(*pairs->viewport(), pairs->visualItemRect(pairs->item(1)).center());
    named<QTimeEdit>(window, QStringLiteral("From time (UTC)"))->setTime({4, 30});
    hover(*window.tabs().tabBar(), QPoint(20, 20));
    album.add(QStringLiteral("state-pending"), window.grab());
    hover(*pairs->viewport(), pairs->visualItemRect(pairs->item(0)).center());
    auto *refresh = named<QPushButton>(window, QStringLiteral("Refresh"));
    hover(*refresh, QPoint(5, 5));
    window.tabs().tabBar()->setFocus();
    album.add(QStringLiteral("state-hover"), window.grab());
    refresh->setAttribute(Qt::WA_UnderMouse, false);
    refresh->click();
    refresh->setFocus();
    album.add(QStringLiteral("state-focus"), window.grab());
}

void take_first_start(const Album &album)
{
    const QTemporaryDir folder;
    data::TallyDb db(folder.filePath(QStringLiteral("tally.db")));
    db.init_schema();
    db.set_setting(QStringLiteral("mailcache_dir"), QStringLiteral("/none"));
    queries::StoreQueries queries(db);
    Settings settings(db);
    platform::FakeHost host;
    ui::MainWindow window({.db = db, .queries = queries, .settings = settings, .host = host});
    window.show();
    Q_EMIT window.chain().refreshEnded(false);
    QCoreApplication::processEvents();
    album.add(QStringLiteral("first-start"), window.grab());
    window.close();
}

void take_selector(const Album &album)
{
    platform::GameWindowInfo one;
    one.title = QStringLiteral("Rise of Kingdoms");
    one.exe_path = QStringLiteral("C:/Games/RiseOfKingdoms/MASS.exe");
    platform::GameWindowInfo other = one;
    other.exe_path = QStringLiteral("D:/Second/RiseOfKingdoms/MASS.exe");
    ui::GameWindowSelector selector({one, other}, other.exe_path);
    selector.show();
    QCoreApplication::processEvents();
    album.add(QStringLiteral("selector"), selector.grab());
    selector.close();
}

} // namespace tally::tools
