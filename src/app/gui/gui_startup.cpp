#include "app/gui/gui_startup.h"

#include "app/gui/exit_deadline.h"
#include "app/gui/folder_trouble.h"
#include "app/gui/image_formats.h"
#include "app/gui/instance_knock.h"
#include "app/gui/interrupt_watch.h"
#include "app/gui/new_store.h"
#include "app/gui/rollback_marker.h"
#include "data/store/tally_db.h"
#include "platform/host/instance_lock.h"
#include "platform/host/system_host.h"
#include "platform/host/window_session.h"
#include "platform/identity.h"
#include "platform/log/error_stream.h"
#include "platform/log/process_log.h"
#include "platform/paths/data_folders.h"
#include "platform/updater/backups.h"
#include "platform/updater/rollback_notes.h"
#include "queries/store_queries.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/logo.h"
#include "ui/main_window.h"
#include "ui/parts/theme.h"

#include <QApplication>
#include <QDir>
#include <QImageReader>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>

namespace tally::app {
namespace {

/// Also asks the first instance, if there is one, to show its window: whoever starts the program a
/// second time is looking for it.
bool may_run(int argc, char *argv[], platform::Host &host)
{
    {
        const QCoreApplication for_the_socket(argc, argv);
        knock(knock_name());
    }
    return platform::claim_single_instance(host) != platform::InstanceClaim::Refused;
}

void name_application()
{
    QCoreApplication::setOrganizationName(platform::organisation_name);
    QCoreApplication::setApplicationName(platform::application_name);
    QCoreApplication::setApplicationVersion(platform::application_version);
}

/// \return whether the store is ready.
bool open_store(data::TallyDb &db)
{
    try {
        db.init_schema();
        return true;
    } catch (const std::exception &failure) {
        platform::ProcessLog::line(
            QStringLiteral("init_schema failed: %1").arg(platform::text_of(failure)));
        return false;
    }
}

/// A program that is started from a folder window has nobody who reads its error stream.
void show_folder_trouble(const InterruptWatch &interrupts)
{
    const auto trouble = folder_trouble(platform::data_dir());
    if (!trouble)
        return;
    QObject::connect(&interrupts, &InterruptWatch::interrupted, qApp, &QCoreApplication::quit);
    QMessageBox::critical(nullptr, platform::application_name, *trouble);
}

void greet(ui::MainWindow &window, const data::TallyDb &db)
{
    try {
        if (const int battles = db.chain_file_count(); battles >= 1)
            window.statusBar()->showMessage(QStringLiteral("DB contains %1 battles.").arg(battles),
                                            5'000);
    } catch (const std::exception &) {
        // Only a greeting is lost.
    }
}

/// How a run with the window ended.
struct RunEnd {
    int exit_code = 0;
    bool wants_restart = false;
    std::optional<SettingsTable> lost_settings; ///< of a store whose file is gone
};

RunEnd run_window(QApplication &application, const InterruptWatch &interrupts, platform::Host &host)
{
    data::TallyDb db(platform::db_path());
    if (!open_store(db)) {
        show_folder_trouble(interrupts);
        return {.exit_code = 1, .wants_restart = false, .lost_settings = {}};
    }
    Settings settings(db);
    if (settings.is_absent(settings::mailcache_dir))
        settings.set(settings::mailcache_dir, platform::default_mailcache_dir());
    ui::apply_to_app(&application, ui::theme_from_name(settings.get(settings::theme)));

    queries::StoreQueries queries(db);
    ui::MainWindow window({.db = db, .queries = queries, .settings = settings, .host = host});
    QObject::connect(&interrupts, &InterruptWatch::interrupted, &window, [&window] {
        window.request_exit();
        QCoreApplication::quit();
    });
    const KnockListener listener(knock_name(), nullptr);
    QObject::connect(&listener, &KnockListener::knocked, &window, &ui::MainWindow::bring_to_front);
    window.show();
    greet(window, db);
    warn_without_webp(QImageReader::supportedImageFormats());
    QTimer::singleShot(0, &window, &ui::MainWindow::run_post_startup);
    if (platform::Updater::note_start(rollback_marker_path()))
        window.tell_of_unclean_update(platform::Updater::newest_backup(QDir::tempPath()));
    clear_rollback_marker_when_healthy(rollback_marker_path(), &application);
    const int exit_code = QApplication::exec();
    end_process_within(ui::WindowSetup().exit_deadline);
    return {exit_code, window.wants_restart(), settings_of_lost_store(db)};
}

} // namespace

int run_graphical(int argc, char *argv[])
{
    const auto host = platform::make_system_host();
    if (!may_run(argc, argv, *host))
        return 0;

    platform::prefer_x11_platform();
    QApplication application(argc, argv);
    QApplication::setStyle(ui::base_style());
    name_application();
    const InterruptWatch interrupts(nullptr);
    QApplication::setWindowIcon(ui::logo());
    platform::ensure_data_dirs();
    const platform::ProcessLog log(
        {.path = platform::log_path(), .run_line = platform::start_line(platform::db_path())});
    const RunEnd end = run_window(application, interrupts, *host);
    if (end.lost_settings)
        make_new_store(platform::db_path(), *end.lost_settings);
    if (end.wants_restart)
        restart_program();
    return end.exit_code;
}

} // namespace tally::app
