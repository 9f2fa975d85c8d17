#include "ui/main_window.h"

#include "platform/paths/data_folders.h"
#include "ui/about.h"
#include "ui/option_menus.h"

#include <QDesktopServices>
#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QUrl>

namespace tally::ui {

void MainWindow::build_menus()
{
    // Colours that show in both themes, whose sheet leaves these to a style for light windows.
    menuBar()->setStyleSheet(QStringLiteral("QMenu::item:disabled { color: #8a8f9e; }"
                                            "QMenu::separator { background: rgba(138, 143, 158, "
                                            "45%); height: 1px; margin: 3px 8px; }"));
    build_file_menu();
    build_view_menu();
    build_help_menu();
}

void MainWindow::build_file_menu()
{
    QMenu *file = menuBar()->addMenu(QStringLiteral("&File"));
    file->setToolTipsVisible(true);
    file->addAction(QStringLiteral("Reimport &mailcache..."),
                    QKeySequence(QStringLiteral("Ctrl+I")), this, &MainWindow::on_import_mailcache);
    file->addAction(QStringLiteral("Open &data folder"), this, &MainWindow::open_data_folder);
    file->addAction(QStringLiteral("&Settings..."), QKeySequence(QStringLiteral("Ctrl+,")), this,
                    &MainWindow::on_open_settings);
    file->addSeparator();
    // Windows has no keys of its own for leaving.
    QList<QKeySequence> leave = QKeySequence::keyBindings(QKeySequence::Quit);
    if (const QKeySequence ours(QStringLiteral("Ctrl+Q")); !leave.contains(ours))
        leave << ours;
    file->addAction(QStringLiteral("E&xit"), this, &MainWindow::request_exit)->setShortcuts(leave);
}

void MainWindow::build_view_menu()
{
    QMenu *view = menuBar()->addMenu(QStringLiteral("&View"));
    view->setToolTipsVisible(true);
    overlay_action_ = view->addAction(QStringLiteral("Show &Overlay"));
    overlay_action_->setShortcut(QKeySequence(QStringLiteral("Ctrl+O")));
    overlay_action_->setCheckable(true);
    connect(overlay_action_, &QAction::toggled, this, &MainWindow::on_toggle_overlay);
    add_overlay_options(*view, around_.settings);
    view->addSeparator();
    honor_action_ = view->addAction(QStringLiteral("Honor &Tracker"));
    honor_action_->setShortcut(QKeySequence(QStringLiteral("Ctrl+H")));
    honor_action_->setCheckable(true);
    connect(honor_action_, &QAction::toggled, this, &MainWindow::on_toggle_honor_tracker);
    add_tracker_options(*view, around_.settings);
    view->addSeparator();
    connect(add_theme_menu(*view, around_.settings), &QMenu::triggered, this,
            [this](const QAction *theme) { apply_theme(theme->data().toInt()); });
}

void MainWindow::build_help_menu()
{
    QMenu *help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->setToolTipsVisible(true);
    add_update_entry(*help);
    help->addSeparator();
    help->addAction(QStringLiteral("&About..."), this,
                    [this] { show_about_box(this, around_.endpoint.product_page); });
}

void MainWindow::open_data_folder()
{
    platform::ensure_data_dirs();
    QDesktopServices::openUrl(QUrl::fromLocalFile(platform::data_dir()));
}

} // namespace tally::ui
