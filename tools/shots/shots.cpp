// Pictures of every window in both themes. The scale is that of QT_SCALE_FACTOR.

#include "album.h"
#include "honor_shots.h"
#include "overlay_shots.h"
#include "platform/host/fake/fake_host.h"
#include "platform/identity.h"
#include "queries/store_queries.h"
#include "report_shots.h"
#include "round_overview_shot.h"
#include "sample_store.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "state_shots.h"
#include "ui/about.h"
#include "ui/import_progress.h"
#include "ui/loading_splash.h"
#include "ui/logo.h"
#include "ui/main_window.h"
#include "ui/parts/theme.h"
#include "ui/report_tabs.h"
#include "update_shots.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QStatusBar>
#include <QTimer>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace {

using namespace tally;

using tools::Album;

/// The window with a menu, and perhaps one of its submenus, open over it.
QPixmap with_menu(QMainWindow &window, const QString &title, const QString &submenu = {})
{
    QPixmap picture = window.grab();
    QPainter painter(&picture);
    for (QAction *action : window.menuBar()->actions()) {
        if (action->text() != title)
            continue;
        QMenu *menu = action->menu();
        QPoint corner =
            window.menuBar()->mapTo(&window, window.menuBar()->actionGeometry(action).bottomLeft());
        menu->popup(window.mapToGlobal(corner));
        painter.drawPixmap(corner, menu->grab());
        for (QAction *entry : menu->actions()) {
            if (!submenu.isEmpty() && entry->text() == submenu) {
                menu->setActiveAction(entry);
                painter.drawPixmap(corner, menu->grab());
                corner += menu->actionGeometry(entry).topRight();
                entry->menu()->popup(window.mapToGlobal(corner));
                painter.drawPixmap(corner, entry->menu()->grab());
                entry->menu()->close();
            }
        }
        menu->close();
    }
    return picture;
}

/// The modal dialog that `show` opens.
QPixmap modal(const std::function<void()> &show)
{
    QPixmap picture;
    QTimer::singleShot(200, [&picture] {
        QWidget *dialog = QApplication::activeModalWidget();
        picture = dialog->grab();
        dialog->close();
    });
    show();
    return picture;
}

/// The pages of the main window, with data.
void take_pages(const Album &album, ui::MainWindow &window)
{
    ui::ReportTabs &pages = window.tabs();
    constexpr std::array names = {"chains", "trials",      "forts",          "keep",
                                  "field",  "field-rally", "field-garrison", "field-favorites"};
    for (int page = 0; page < pages.count(); ++page) {
        pages.setCurrentIndex(page);
        QEventLoop answers;
        QTimer::singleShot(300, &answers, &QEventLoop::quit);
        answers.exec();
        album.add(QLatin1StringView(names.at(static_cast<std::size_t>(page))), window.grab());
    }
}

void take_all(const Album &album, tools::SampleStore &store)
{
    queries::StoreQueries queries(store.db());
    Settings settings(store.db());
    settings.set(settings::field_fights_beta_notice_shown, true); // it would stand over the pages
    platform::FakeHost host;
    ui::MainWindow window({.db = store.db(),
                           .queries = queries,
                           .settings = settings,
                           .host = host,
                           .clock = [] { return tools::SampleStore::end; },
                           .icon_dir = store.icon_dir()});
    window.show();
    QCoreApplication::processEvents();
    take_pages(album, window);
    for (const auto &[name, picture] : report_shots(window))
        album.add(name, picture);
    window.tabs().setCurrentIndex(0);
    tools::take_states(album, window);
    window.resize(1000, 640);
    QCoreApplication::processEvents();
    window.statusBar()->showMessage(
        QStringLiteral("Bootstrap done: scanned=2431  imported=12  errors=0. Monitoring active."));
    for (const auto &[title, submenu] :
         {std::pair(QStringLiteral("&File"), QString()),
          std::pair(QStringLiteral("&View"), QStringLiteral("Overlay options")),
          std::pair(QStringLiteral("&View"), QStringLiteral("&Theme")),
          std::pair(QStringLiteral("&Help"), QString())})
        album.add(
            QStringLiteral("menu-%1%2")
                .arg(title.mid(1).toLower(),
                     submenu.isEmpty()
                         ? QString()
                         : u'-' + QString(submenu).remove(u'&').section(u' ', 0, 0).toLower()),
            with_menu(window, title, submenu));

    ui::LoadingSplash splash(&window, QStringLiteral("Downloading inscriptions..."));
    splash.setAttribute(Qt::WA_DeleteOnClose, false);
    splash.show();
    album.add(QStringLiteral("splash"), splash.grab());
    splash.close();

    ui::ImportProgress progress(&window);
    progress.show();
    progress.show_progress(1400, 2431, 12);
    album.add(QStringLiteral("progress"), progress.grab());
    progress.close();

    album.add(QStringLiteral("about"), modal([&window] {
                  ui::show_about_box(&window, platform::shipped_endpoint().product_page);
              }));
    album.add(QStringLiteral("folder"), modal([&window] {
                  QFileDialog::getExistingDirectory(
                      &window, QStringLiteral("Select mailcache directory"), QDir::rootPath());
              }));
    window.close();
}

/// Without it the screen is smaller than any user's, and texts wrap where they never do.
void make_screen(const QTemporaryDir &folder, QSize size)
{
    const QString path = folder.filePath(QStringLiteral("screen.json"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(QStringLiteral(R"({"screens": [{"name": "shots", "x": 0, "y": 0, "width": %1,
        "height": %2, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})")
                   .arg(size.width())
                   .arg(size.height())
                   .toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + path.toLocal8Bit());
}

struct Order {
    QString dir = QStringLiteral(".");
    QSize screen{2560, 1440};
};

/// Before there is an application, whose screen it tells. Ends the process if it is none.
Order parse(int argc, char *argv[])
{
    QStringList words;
    for (int i = 0; i < argc; ++i)
        words << QString::fromLocal8Bit(argv[i]);
    QCommandLineParser parser;
    const QCommandLineOption screen(QStringLiteral("screen"), QStringLiteral("Its pixels."),
                                    QStringLiteral("WIDTHxHEIGHT"), QStringLiteral("2560x1440"));
    parser.addOption(screen);
    parser.addPositionalArgument(QStringLiteral("dir"), QStringLiteral("Where to."));
    const QStringList sides =
        parser.parse(words) ? parser.value(screen).split(u'x') : QStringList();
    const QStringList places = parser.positionalArguments();
    if (sides.size() != 2 || places.size() != 1) {
        std::fputs("usage: shots [--screen WIDTHxHEIGHT] DIR\n", stderr);
        std::exit(2);
    }
    return {places.first(), {sides.first().toInt(), sides.last().toInt()}};
}

} // namespace

int main(int argc, char *argv[])
{
    const Order order = parse(argc, argv);
    const QTemporaryDir folder;
    make_screen(folder, order.screen);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(ui::logo());
    const int percent = qRound(application.devicePixelRatio() * 100);
    tools::SampleStore store;
    for (const int theme : {0, 1}) {
        Settings settings(store.db());
        settings.set(settings::theme, ui::theme_name(theme));
        settings.set(settings::window_geometry_qt, QString());
        ui::apply_to_app(&application, theme);
        const Album album(order.dir,
                          QStringLiteral("-%1-%2").arg(ui::theme_name(theme)).arg(percent));
        take_all(album, store);
        tools::take_first_start(album);
        tools::take_selector(album);
        tools::take_updates(album);
        album.add(QStringLiteral("rounds"), round_overview_shot());
        tools::take_overlays(album, store);
        tools::take_honor_tracker(album, store);
    }
}
