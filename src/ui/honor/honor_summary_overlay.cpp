#include "ui/honor/honor_summary_overlay.h"

#include "honor/honor_summary_service.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/honor/honor_discrepancy_history_dialog.h"
#include "ui/honor/honor_panel.h"
#include "ui/parts/theme.h"
#include "ui/pinning/overlay_font_sizes.h"
#include "ui/pinning/pinned_overlay.h"
#include "ui/pinning/setting_menus.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace tally::honor {
namespace {

constexpr double opacity = 0.92;
constexpr int estimate_interval_ms = 5'000;
constexpr int rivals = 3;

HonorLook look_of(const Settings &settings)
{
    return {ui::theme_from_name(settings.get(settings::theme)),
            ui::permitted_font_size(settings.get(settings::honor_tracker_font_size))};
}

} // namespace

HonorSummaryOverlay::HonorSummaryOverlay(const ui::Surroundings &around,
                                         HonorSummaryService *service, QWidget *parent)
    : QWidget(parent), around_(around), service_(service),
      panel_(new HonorPanel(look_of(around.settings))),
      pin_(around.host, ui::honor_pin, around.settings), drag_(*this, pin_)
{
    ui::make_overlay(*this, opacity);
    setWindowTitle(QStringLiteral("Honor Tracker"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(look_of(around.settings).window());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->setSizeConstraint(QLayout::SetNoConstraint); // it has the size that fits the panel
    layout->addWidget(panel_);
    show_overtake(service_->snapshot());
    refresh_estimate();
    fit();
    move(pin_.free_position().x, pin_.free_position().y);
    ui::come_to_a_screen(*this);
    connect_service();
    connect(&estimate_timer_, &QTimer::timeout, this, &HonorSummaryOverlay::refresh_estimate);
    estimate_timer_.start(estimate_interval_ms);
    connect(&pin_timer_, &QTimer::timeout, this, &HonorSummaryOverlay::pin_tick);
    if (pin_.pinned())
        pin_timer_.start(ui::pin_interval_ms);
    follow_settings();
    service_->start();
}

void HonorSummaryOverlay::connect_service()
{
    connect(service_, &HonorSummaryService::honorUpdated, this,
            &HonorSummaryOverlay::on_honor_updated);
    connect(service_, &HonorSummaryService::stateChanged, this,
            &HonorSummaryOverlay::on_state_changed);
    connect(service_, &HonorSummaryService::reconciled, this, &HonorSummaryOverlay::on_reconciled);
    connect(service_, &HonorSummaryService::adminRequired, this,
            &HonorSummaryOverlay::on_admin_required);
    connect(service_, &HonorSummaryService::gameNotFound, this,
            &HonorSummaryOverlay::on_game_not_found);
    connect(panel_, &HonorPanel::syncWanted, this, &HonorSummaryOverlay::on_sync_click);
    connect(panel_, &HonorPanel::historyWanted, this, &HonorSummaryOverlay::on_history_click);
    connect(panel_, &HonorPanel::closeWanted, this, &QWidget::close);
}

void HonorSummaryOverlay::follow_settings()
{
    Settings &settings = around_.settings;
    settings.on_change(settings::honor_tracker_font_size, this,
                       [this](int size) { set_font_size(size); });
    settings.on_change(settings::honor_tracker_pinned, this, [this](bool pinned) {
        if (pinned != pin_.pinned())
            set_pinned(pinned);
    });
    ui::follow_click_through(*this, settings, settings::honor_tracker_click_through);
}

void HonorSummaryOverlay::fit()
{
    const QSize size = panel_->fitting_size();
    setFixedWidth(size.width());
    resize(size);
}

void HonorSummaryOverlay::set_font_size(int size)
{
    size = ui::permitted_font_size(size);
    if (size == panel_->font_size())
        return;
    panel_->set_font_size(size);
    around_.settings.set(settings::honor_tracker_font_size, size);
    fit();
    refresh_estimate();
}

void HonorSummaryOverlay::set_pinned(bool pinned)
{
    ui::set_overlay_pinned(pin_, pinned, *this, pin_timer_);
}

void HonorSummaryOverlay::show_figures(const HonorSnapshot &figures)
{
    panel_->show_figures(figures, around_.clock());
    show_overtake(figures);
    fit();
}

void HonorSummaryOverlay::show_overtake(const HonorSnapshot &known)
{
    panel_->show_overtake(overtake_texts(overtake_targets(known, rivals), known));
}

void HonorSummaryOverlay::on_honor_updated(std::optional<qint64> base_honor, int delta_reports,
                                           std::optional<qint64> estimated,
                                           std::optional<double> base_ts,
                                           const std::vector<LeaderboardEntry> &leaderboard,
                                           std::optional<int> rank, std::optional<int> kingdom,
                                           const QString &player_name)
{
    panel_->clear_warning();
    show_figures({base_honor, base_ts, delta_reports, estimated, rank, kingdom, leaderboard,
                  player_name, false});
}

void HonorSummaryOverlay::refresh_estimate()
{
    if (closing_)
        return;
    const HonorSnapshot snapshot = service_->snapshot();
    if (snapshot.base_honor)
        show_figures(snapshot);
}

void HonorSummaryOverlay::on_state_changed(const QString &msg)
{
    panel_->show_status(msg);
    fit();
}

void HonorSummaryOverlay::on_reconciled(int)
{
    // The history tells of it.
}

void HonorSummaryOverlay::on_admin_required()
{
    panel_->show_admin_required();
}

void HonorSummaryOverlay::on_game_not_found()
{
    panel_->show_game_not_found();
}

void HonorSummaryOverlay::on_sync_click()
{
    service_->trigger_sync();
}

void HonorSummaryOverlay::on_history_click()
{
    // The overlay may be closed and destroyed while the dialog is shown.
    (new HonorDiscrepancyHistoryDialog(around_, this))->exec();
}

void HonorSummaryOverlay::pin_tick()
{
    ui::apply_pin_step(pin_.tick(ui::overlay_view(*this)), *this);
}

void HonorSummaryOverlay::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    drag_.press(*event);
    event->accept();
}

void HonorSummaryOverlay::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseReleaseEvent(event);
    drag_.release();
    event->accept();
}

void HonorSummaryOverlay::mouseMoveEvent(QMouseEvent *event)
{
    drag_.move(*event);
    event->accept();
}

void HonorSummaryOverlay::closeEvent(QCloseEvent *event)
{
    closing_ = true;
    pin_.begin_close();
    service_->stop();
    estimate_timer_.stop();
    pin_timer_.stop();
    if (persist_visibility_on_close_)
        around_.settings.set(settings::honor_tracker_visible, false);
    Q_EMIT overlayClosed();
    QWidget::closeEvent(event);
}

void HonorSummaryOverlay::contextMenuEvent(QContextMenuEvent *event)
{
    drag_.release(); // the menu takes the mouse, and with it the button's release
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Sync now"), this, &HonorSummaryOverlay::on_sync_click);
    menu->addAction(QStringLiteral("History"), this, &HonorSummaryOverlay::on_history_click);
    menu->addSeparator();
    ui::add_font_sizes(*menu, around_.settings, settings::honor_tracker_font_size);
    ui::add_pin_actions(*menu, pin_, around_.settings, *this);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Close"), this, &QWidget::close);
    menu->popup(event->globalPos());
    event->accept();
}

} // namespace tally::honor
