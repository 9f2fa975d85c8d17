#include "ui/main_window.h"

#include "honor/honor_summary_service.h"
#include "platform/host/process_end.h"
#include "platform/identity.h"
#include "platform/log/error_stream.h"
#include "queries/store_queries.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/about.h"
#include "ui/chains/chain_tracker_tab.h"
#include "ui/field/field_fights_tab.h"
#include "ui/forts/fort_rally_tab.h"
#include "ui/honor/honor_summary_overlay.h"
#include "ui/items/item_pictures.h"
#include "ui/keep/barbarian_keep_tab.h"
#include "ui/lost_store_notice.h"
#include "ui/overlay/overlay_window.h"
#include "ui/parts/message_box.h"
#include "ui/parts/plain_label.h"
#include "ui/parts/theme.h"
#include "ui/parts/window_bounds.h"
#include "ui/refresh_mark.h"
#include "ui/report_tabs.h"
#include "ui/start_up_chain.h"
#include "ui/trials/baulur_run_tab.h"
#include "ui/update/update_dialog.h"

#include <QApplication>
#include <QEventLoopLocker>
#include <QLabel>
#include <QStatusBar>
#include <QTimer>

namespace tally::ui {

void exit_hard()
{
    platform::print_line(QStringLiteral("[MainWindow] hard-exit deadline hit — _Exit(0)"));
    platform::end_at_once(0);
}

MainWindow::MainWindow(const Surroundings &around, QWidget *parent, const WindowSetup &setup)
    : QMainWindow(parent), around_(around), setup_(setup),
      chain_(std::make_unique<StartUpChain>(around, setup, this)), last_kill_(around.queries)
{
    setWindowTitle(
        QStringLiteral("%1 %2").arg(platform::application_name, platform::application_version));
    resize(1400, 900);
    setAcceptDrops(true);
    make_honor_service();
    start_keep_service();
    new WindowBounds(this);
    build_menus();
    build_status_bar();
    build_tabs();
    connect_chain();
    watch_store();
    new RefreshMark(*chain_, *statusBar());
    if (!restore_geometry())
        place_in_the_middle();
    QTimer::singleShot(0, this, &MainWindow::show_as_it_was);
}

MainWindow::~MainWindow()
{
    delete overlay_;
    delete honor_overlay_;
    request_end();
    if (wait_until(leaving_.value_or(QDeadlineTimer(setup_.exit_deadline))))
        return;
    // The program does not come back from here; a test that does must let its threads end.
    setup_.hard_exit();
    wait_until(QDeadlineTimer(QDeadlineTimer::Forever));
}

void MainWindow::request_end()
{
    cancel_import_ = true;
    around_.queries.request_end();
    honor_service_->request_end();
    chain_->request_end();
    request_end_of_updates();
}

bool MainWindow::wait_until(QDeadlineTimer deadline)
{
    const bool chain_has_ended = chain_->wait_until(deadline);
    const bool updates_have_ended = wait_for_updates(deadline);
    const bool honor_has_ended = honor_service_->wait_until(deadline);
    return around_.queries.wait_until(deadline) && chain_has_ended && updates_have_ended &&
           honor_has_ended;
}

void MainWindow::build_tabs()
{
    tabs_ = new ReportTabs(this);
    chain_tab_ = new ChainTrackerTab(around_, barbarian_btype, tabs_);
    tabs_->add(chain_tab_, QStringLiteral("⚔️ Chain Tracker"));
    auto *queries = &around_.queries;
    const QString &icons = around_.icon_dir;
    tabs_->add(new BaulurRunTab(queries, icons, tabs_, around_.clock),
               QStringLiteral("🛡️ Baulur Run"));
    tabs_->add(new FortRallyTab(queries, icons, tabs_, around_.clock),
               QStringLiteral("🏰 Fort Rally"));
    tabs_->add(new BarbarianKeepTab(queries, keep_service_, icons, tabs_),
               QStringLiteral("🗡️ Barbarian Keep"));
    int mode = 0;
    for (const char16_t *title :
         {u"🗡️ Field Fights", u"🏹 Rally", u"🏰 Garrison", u"★ Favorites"})
        tabs_->add(new FieldFightsTab(around_, mode++, tabs_), QString::fromUtf16(title));
    connect(tabs_, &QTabWidget::currentChanged, this, &MainWindow::on_tab_changed);
    connect(chain_tab_, &ReportTab::mailFolderWanted, this, &MainWindow::on_import_mailcache);
    setCentralWidget(tabs_);
}

std::optional<ChainFilter> MainWindow::current_chain_filter() const
{
    return chain_tab_ ? std::optional(chain_tab_->current_filter()) : std::nullopt;
}

QString MainWindow::current_tab_title() const
{
    return tabs_ ? tabs_->tabText(tabs_->currentIndex()) : QString();
}

void MainWindow::on_tab_changed(int index)
{
    if (!tabs_ || !qobject_cast<FieldFightsTab *>(tabs_->widget(index)) ||
        around_.settings.get(settings::field_fights_beta_notice_shown))
        return;
    around_.settings.set(settings::field_fights_beta_notice_shown, true);
    show_box(QMessageBox::Information, QStringLiteral("Field Fights"),
             QStringLiteral("Field Fights is a beta module — the layout and columns may still "
                            "change between releases.\n\nReports are already imported and "
                            "displayed correctly; only the presentation is subject to polish."),
             this);
}

void MainWindow::connect_chain()
{
    connect(chain_.get(), &StartUpChain::message, this, &MainWindow::show_message);
    connect(chain_.get(), &StartUpChain::referenceDataChanged, this, forget_item_pictures);
    connect(chain_.get(), &StartUpChain::shownDataChanged, this, &MainWindow::refresh_all_tabs);
    connect(chain_.get(), &StartUpChain::refreshDone, this, &MainWindow::start_tray);
    connect(chain_.get(), &StartUpChain::refreshDone, this, &MainWindow::start_update_checks);
    connect(chain_.get(), &StartUpChain::refreshDone, this, &MainWindow::open_remembered_overlays);
    connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::keep_overlays_remembered);
}

void MainWindow::watch_store()
{
    const auto *notice = new LostStoreNotice(around_.db, this, setup_.store_interval);
    connect(notice, &LostStoreNotice::restartWanted, this, [this] {
        wants_restart_ = true;
        request_exit();
    });
}

void MainWindow::run_post_startup()
{
    chain_->run();
}

void MainWindow::refresh_all_tabs()
{
    tabs_->refresh_all();
    let_honor_tracker_begin();
}

void MainWindow::build_status_bar()
{
    QLabel *version = plain_label(
        QStringLiteral("Version: %1  %2").arg(platform::application_version, copyright_line()));
    version->setObjectName(QStringLiteral("versionLabel"));
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
    around_.settings.set(settings::theme, theme_name(theme));
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
    request_end();
    keep_overlays_remembered();
    // What is modal keeps the window from closing.
    for (QWidget *modal = QApplication::activeModalWidget(); modal && modal != this;) {
        modal->close();
        QWidget *next = QApplication::activeModalWidget();
        modal = next == modal ? nullptr : next;
    }
    close();
}

} // namespace tally::ui
