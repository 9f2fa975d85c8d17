#pragma once

#include "data/store/chain_records.h"
#include "data/store/change_stamp.h"
#include "queries/asker.h"
#include "ui/chains/chain_filter.h"
#include "ui/overlay/overlay_look.h"
#include "ui/overlay/overlay_mode.h"
#include "ui/parts/surroundings.h"
#include "ui/parts/view_asker.h"
#include "ui/pinning/overlay_drag.h"
#include "ui/pinning/pin_state.h"

#include <QTimer>
#include <QWidget>

#include <optional>
#include <vector>

namespace tally::ui {

class OverlayContent;
class OverlaySource;

/// The small window over the game that shows what the chains of the present filter have earned. It
/// remembers mode, type and place in the settings, and follows what others set there.
class OverlayWindow : public QWidget {
    Q_OBJECT

public:
    /// Keeps the colours of the theme that is set now.
    /// \param source may be null: then `default_npc_btype` without bounds is shown. It outlives the
    ///        overlay.
    OverlayWindow(const Surroundings &around, const OverlaySource *source, double default_npc_btype,
                  QWidget *parent = nullptr);

    /// By the numbers of `OverlayMode`.
    void set_mode(int mode);
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
    void refresh_data();
    void pin_tick();

private:
    /// All that the figures depend on.
    struct Question {
        data::ChainQuestion chains;
        data::ChangeStamp reports;
        quint64 reference_data = 0;

        bool operator==(const Question &) const = default;
    };
    struct Answer {
        data::ChainSummary summary;
        std::vector<data::LootStat> loot;
    };

    void follow_settings();
    void rebuild();
    ChainFilter present_filter() const;
    void ask(const Question &question);
    void show_answer();
    /// A text that wraps is as high as the width leaves it.
    void fit_height();

    Surroundings around_;
    const OverlaySource *source_;
    double default_npc_btype_;
    OverlayLook look_;
    OverlayMode mode_;
    OverlayContent *content_ = nullptr;
    PinState pin_;
    OverlayDrag drag_;
    QTimer refresh_timer_;
    QTimer pin_timer_;
    bool persist_visibility_on_close_ = true;
    bool closing_ = false;
    std::optional<Question> asked_; ///< last; nothing if that failed
    std::optional<Answer> answer_;  ///< that is shown
    ViewAsker asker_;
};

} // namespace tally::ui
