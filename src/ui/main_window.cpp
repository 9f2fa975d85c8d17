#include "main_window.h"

#include "about.h"
#include "identity.h"
#include "report_tabs.h"
#include "start_up_chain.h"
#include "stored_settings.h"
#include "theme.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QStatusBar>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

namespace tally::ui {

void exit_hard()
{
    std::fputs("[MainWindow] hard-exit deadline hit — _Exit(0)\n", stderr);
    std::_Exit(0);
}

MainWindow::MainWindow(data::TallyDb *db, QWidget *parent, const WindowSetup &setup)
    : QMainWindow(parent), db_(db), setup_(setup),
      chain_(std::make_unique<StartUpChain>(db, setup, this))
{
    setWindowTitle(
        QStringLiteral("%1 %2").arg(platform::application_name, platform::application_version));
    resize(1400, 900);
    setAcceptDrops(true);
    build_menus();
    build_status_bar();
    tabs_ = new ReportTabs(this);
    setCentralWidget(tabs_);
    connect_chain();
    if (!restore_geometry())
        place_in_the_middle();
    QTimer::singleShot(0, this, &MainWindow::show_as_it_was);
}

MainWindow::~MainWindow()
{
    cancel_import_ = true;
    if (chain_->end(leaving_.value_or(QDeadlineTimer(setup_.exit_deadline))))
        return;
    // The program does not come back from here; a test that does must let its threads end.
    setup_.hard_exit();
    chain_->end(QDeadlineTimer(QDeadlineTimer::Forever));
}

void MainWindow::connect_chain()
{
    connect(chain_.get(), &StartUpChain::message, this, &MainWindow::show_message);
    connect(chain_.get(), &StartUpChain::shownDataChanged, this, &MainWindow::refresh_all_tabs);
}

void MainWindow::run_post_startup()
{
    chain_->run();
}

void MainWindow::refresh_all_tabs()
{
    tabs_->refresh_all();
}

void MainWindow::build_status_bar()
{
    auto *version = new QLabel(
        QStringLiteral("Version: %1  %2").arg(platform::application_version, copyright_line()));
    version->setObjectName(QStringLiteral("versionLabel"));
    version->setTextFormat(Qt::PlainText);
    version->setContentsMargins(0, 0, 8, 0);
    statusBar()->addPermanentWidget(version);
    statusBar()->setSizeGripEnabled(false);
    show_message(QStringLiteral("Ready."), 3'000);
}

void MainWindow::show_message(const QString &text, int ms)
{
    statusBar()->showMessage(text, ms);
}

void MainWindow::apply_theme(int theme)
{
    apply_to_app(qobject_cast<QApplication *>(QCoreApplication::instance()), theme);
    store_setting(*db_, QStringLiteral("theme"), theme_name(theme));
}

void MainWindow::on_theme_dark()
{
    apply_theme(0);
}

void MainWindow::on_theme_light()
{
    apply_theme(1);
}

void MainWindow::bring_to_front()
{
    if (leaving_)
        return;
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::request_exit()
{
    if (!leaving_) {
        leaving_ = QDeadlineTimer(setup_.exit_deadline);
        QTimer::singleShot(setup_.exit_deadline, qApp, setup_.hard_exit);
    }
    cancel_import_ = true;
    // What is modal keeps the window from closing.
    for (QWidget *modal = QApplication::activeModalWidget(); modal && modal != this;) {
        modal->close();
        QWidget *next = QApplication::activeModalWidget();
        modal = next == modal ? nullptr : next;
    }
    close();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    save_window_state();
    chain_->stop_watcher();
    QWidget::closeEvent(event);
}

} // namespace tally::ui
