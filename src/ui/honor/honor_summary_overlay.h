#pragma once

#include "honor/leaderboard_entry.h"
#include "ui/parts/surroundings.h"
#include "ui/pinning/overlay_drag.h"
#include "ui/pinning/pin_state.h"

#include <QTimer>
#include <QWidget>

#include <optional>
#include <vector>

namespace tally::honor {

class HonorPanel;
class HonorSummaryService;
struct HonorSnapshot;

/// The player's honor over the game: the estimate in large type, how it came about, and the people
/// just ahead. The service reads as long as the overlay stands open. It remembers place and type in
/// the settings, and follows what others set there.
class HonorSummaryOverlay : public QWidget {
    Q_OBJECT

public:
    /// Keeps the colours of the theme that is set now, and starts the service.
    /// \param service outlives the overlay
    HonorSummaryOverlay(const ui::Surroundings &around, HonorSummaryService *service,
                        QWidget *parent = nullptr);

    /// \param size in points; what an overlay cannot have counts as 10
    void set_font_size(int size);
    void set_pinned(bool pinned);
    /// Whether closing it is remembered, which is so at first.
    void set_persist_visibility_on_close(bool persist) { persist_visibility_on_close_ = persist; }

Q_SIGNALS:
    void overlayClosed();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private Q_SLOTS:
    void on_honor_updated(std::optional<qint64> base_honor, int delta_reports,
                          std::optional<qint64> estimated, std::optional<double> base_ts,
                          const std::vector<tally::honor::LeaderboardEntry> &leaderboard,
                          std::optional<int> rank, std::optional<int> kingdom,
                          const QString &player_name);
    void on_state_changed(const QString &msg);
    void on_reconciled(int discrepancy);
    void on_admin_required();
    void on_game_not_found();
    void refresh_estimate();
    void pin_tick();
    void on_sync_click();
    void on_history_click();

private:
    void connect_service();
    void follow_settings();
    void show_figures(const HonorSnapshot &figures);
    void show_overtake(const HonorSnapshot &known);
    void fit();

    ui::Surroundings around_;
    HonorSummaryService *service_;
    HonorPanel *panel_;
    ui::PinState pin_;
    ui::OverlayDrag drag_;
    QTimer estimate_timer_;
    QTimer pin_timer_;
    bool persist_visibility_on_close_ = true;
    bool closing_ = false;
};

} // namespace tally::honor
