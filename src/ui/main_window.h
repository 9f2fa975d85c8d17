#pragma once

#include "queries/asker.h"
#include "ui/overlay/overlay_source.h"
#include "ui/parts/surroundings.h"
#include "ui/window_setup.h"

#include <QDeadlineTimer>
#include <QMainWindow>
#include <QPointer>

#include <atomic>
#include <memory>
#include <optional>

class QAction;
class QEventLoopLocker;
class QMenu;
class QTimer;
class QUrl;

namespace tally::honor {
class HonorSummaryOverlay;
class HonorSummaryService;
} // namespace tally::honor

namespace tally::services {
class KeepCooldownService;
}

namespace tally::data {
struct MailImport;
}

namespace tally::ui {

class ChainTrackerTab;
class ImportProgress;
class OverlayWindow;
class ReportTabs;
class StartUpChain;
class TrayManager;
class UpdateDialog;

/// The npc base type whose chains are shown.
inline constexpr double barbarian_btype = 1.0;

/// The program's one main window: menus, status bar, the pages of reports and the ways to import
/// mails by hand. What runs by itself behind it is the `StartUpChain`.
class MainWindow : public QMainWindow, private OverlaySource {
    Q_OBJECT

public:
    explicit MainWindow(const Surroundings &around, QWidget *parent = nullptr,
                        const WindowSetup &setup = {});
    /// Waits for the window's threads within the deadline for leaving.
    ~MainWindow() override;

    /// To be called once the event loop runs.
    void run_post_startup();
    void refresh_all_tabs();
    /// Leaves the program in order, or at the deadline in whatever state it is.
    void request_exit();
    /// Asks the update server, for at most ten seconds, in which events go on being served. Offers
    /// what is newer; says that nothing is, or that there was no answer, only if it is `manual`.
    void check_for_updates(bool manual);
    /// In the status bar, for the rest of the run.
    /// \param backup folder of the version before; empty if it is gone
    void tell_of_unclean_update(const QString &backup);
    /// 0 is dark, 1 is light; applied and stored.
    void apply_theme(int theme);
    /// What the page of chains shows; empty while there is none.
    std::optional<ChainFilter> current_chain_filter() const override;
    QString current_tab_title() const override;
    /// In front of other windows, with the keyboard.
    void bring_to_front();

    ReportTabs &tabs() { return *tabs_; }
    StartUpChain &chain() { return *chain_; }
    services::KeepCooldownService &keep_service() { return *keep_service_; }
    /// Whether the program is to be started again once it has left.
    bool wants_restart() const { return wants_restart_; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private Q_SLOTS:
    void on_import_mailcache();
    void on_open_settings();
    void on_theme_dark();
    void on_theme_light();
    /// Whoever turns to field fights for the first time is told what to expect.
    void on_tab_changed(int index);
    void on_update_tick();
    void on_toggle_overlay(bool show);
    void on_overlay_closed();
    void on_toggle_honor_tracker(bool show);
    void on_honor_overlay_closed();

private:
    void build_menus();
    void build_file_menu();
    void build_view_menu();
    void build_help_menu();
    void build_status_bar();
    void build_tabs();
    void connect_chain();
    void make_honor_service();
    /// A tracker that found too few reports looks again.
    void let_honor_tracker_begin();
    void start_keep_service();
    void start_tray();
    void add_update_entry(QMenu &menu);
    void start_update_checks();
    void offer_update(const QJsonObject &record, bool manual);
    void tell_up_to_date(bool manual);
    void on_update_dialog_finished();
    void request_end_of_updates();
    bool wait_for_updates(QDeadlineTimer deadline);
    void connect_tray(TrayManager *tray);
    /// Hides the window; the tray brings it back.
    void go_on_in_tray();
    void open_remembered_overlays();
    /// Those that stand open now come back at the next start, whatever closes them.
    void keep_overlays_remembered();
    void watch_store();
    /// Asks all threads behind the window to end; does not wait.
    void request_end();
    /// \return whether all of them have ended in time.
    bool wait_until(QDeadlineTimer deadline);
    void show_message(const QString &text, int ms);
    void open_data_folder();

    /// \return whether the stored geometry was for a screen that is there.
    bool restore_geometry();
    void place_in_the_middle();
    void show_as_it_was();
    void save_window_state();

    void import_with_progress(const QString &folder);
    /// Lets the dialog's button, and the end of the program, stop an import.
    void let_cancel(ImportProgress &dialog);
    void import_drop(const QList<QUrl> &urls);
    data::MailImport import_dropped(const QUrl &url);

    Surroundings around_;
    WindowSetup setup_;
    ReportTabs *tabs_ = nullptr;
    ChainTrackerTab *chain_tab_ = nullptr;
    honor::HonorSummaryService *honor_service_ = nullptr;
    services::KeepCooldownService *keep_service_ = nullptr;
    QAction *overlay_action_ = nullptr;
    QPointer<OverlayWindow> overlay_; ///< null while there is none
    QAction *honor_action_ = nullptr;
    QPointer<honor::HonorSummaryOverlay> honor_overlay_; ///< null while there is none
    TrayManager *tray_ = nullptr;                        ///< null where the system has no tray
    std::unique_ptr<StartUpChain> chain_;
    std::unique_ptr<QEventLoopLocker> in_tray_; ///< while the window is hidden there
    QTimer *update_timer_ = nullptr;            ///< null until the first check is due
    bool update_check_running_ = false;
    std::shared_ptr<std::atomic<bool>> stop_update_check_ =
        std::make_shared<std::atomic<bool>>(false);
    QPointer<UpdateDialog> update_dialog_; ///< null unless one is open
    bool importing_ = false;
    bool wants_restart_ = false;
    std::atomic<bool> cancel_import_ = false;
    std::optional<QDeadlineTimer> leaving_; ///< set by `request_exit`
    queries::Asker last_kill_;              ///< of the keep
};

} // namespace tally::ui
