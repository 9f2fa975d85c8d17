#include "ui/overlay/overlay_window.h"

#include "data/master/master_cache.h"
#include "data/store/tally_db.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/overlay/overlay_content.h"
#include "ui/overlay/overlay_figures.h"
#include "ui/overlay/overlay_source.h"
#include "ui/pinning/overlay_font_sizes.h"
#include "ui/pinning/pinned_overlay.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QVBoxLayout>

#include <utility>

namespace tally::ui {
namespace {

constexpr double opacity = 0.88;
constexpr int refresh_interval_ms = 3'000;

OverlayLook::Theme theme_of(const Settings &settings)
{
    return settings.get(settings::theme) == u"light" ? OverlayLook::Theme::Light
                                                     : OverlayLook::Theme::Dark;
}

} // namespace

OverlayWindow::OverlayWindow(const Surroundings &around, const OverlaySource *source,
                             double default_npc_btype, QWidget *parent)
    : QWidget(parent), around_(around), source_(source), default_npc_btype_(default_npc_btype),
      look_(theme_of(around.settings),
            permitted_font_size(around.settings.get(settings::overlay_font_size))),
      mode_(overlay_mode_of(around.settings.get(settings::overlay_mode))),
      pin_(around.host, statistics_pin, around.settings), drag_(*this, pin_),
      asker_(around.queries, this)
{
    make_overlay(*this, opacity);
    setWindowTitle(QStringLiteral("Tallyhand overlay"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(look_.window());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    asker_.set_sight(queries::Sight::Seen); // the first figures are asked for before it is shown
    rebuild();
    move(pin_.free_position().x, pin_.free_position().y);
    come_to_a_screen(*this);
    connect(&refresh_timer_, &QTimer::timeout, this, &OverlayWindow::refresh_data);
    connect(&pin_timer_, &QTimer::timeout, this, &OverlayWindow::pin_tick);
    refresh_timer_.start(refresh_interval_ms);
    if (pin_.pinned())
        pin_timer_.start(pin_interval_ms);
    follow_settings();
    refresh_data();
}

void OverlayWindow::follow_settings()
{
    Settings &settings = around_.settings;
    settings.on_change(settings::overlay_font_size, this,
                       [this](int size) { set_font_size(size); });
    settings.on_change(settings::overlay_mode, this, [this](const QString &mode) {
        set_mode(static_cast<int>(overlay_mode_of(mode)));
    });
    settings.on_change(settings::overlay_pinned, this, [this](bool pinned) {
        if (pinned != pin_.pinned())
            set_pinned(pinned);
    });
    follow_click_through(*this, settings, settings::overlay_click_through);
}

void OverlayWindow::set_mode(int mode)
{
    if (mode < 0 || mode >= static_cast<int>(overlay_modes.size()) ||
        mode == static_cast<int>(mode_))
        return;
    mode_ = OverlayMode(mode);
    around_.settings.set(settings::overlay_mode, overlay_mode_key(mode_));
    rebuild();
    refresh_data();
}

void OverlayWindow::set_font_size(int size)
{
    size = permitted_font_size(size);
    if (size == look_.font_size())
        return;
    look_.set_font_size(size);
    around_.settings.set(settings::overlay_font_size, size);
    rebuild();
    refresh_data();
}

void OverlayWindow::set_pinned(bool pinned)
{
    set_overlay_pinned(pin_, pinned, *this, pin_timer_);
}

void OverlayWindow::rebuild()
{
    if (content_) {
        content_->hide();
        layout()->removeWidget(content_);
        content_->deleteLater();
    }
    content_ = new OverlayContent(mode_, look_, around_.icon_dir);
    layout()->addWidget(content_);
    content_->show(); // in a window that is shown a layout would do so too late for its size
    show_answer();
    for (QWidget *widget : {static_cast<QWidget *>(content_), static_cast<QWidget *>(this)}) {
        widget->setMinimumSize(0, 0);
        widget->adjustSize();
    }
}

ChainFilter OverlayWindow::present_filter() const
{
    const auto filter = source_ ? source_->current_chain_filter() : std::nullopt;
    return filter.value_or(ChainFilter{default_npc_btype_, {}, {}, {}});
}

void OverlayWindow::refresh_data()
{
    if (closing_)
        return;
    const ChainFilter filter = present_filter();
    content_->show_filter(
        overlay_filter_text(filter, source_ ? source_->current_tab_title() : QString()));
    fit_height();
    try {
        const Question question{
            around_.db.question(filter.btype, filter.from, filter.to, filter.player),
            around_.db.change_stamp(), data::MasterCache::instance().generation()};
        const bool has_new_tables = !asked_ || asked_->reference_data != question.reference_data;
        content_->look_for_icons(has_new_tables ? OverlayContent::Icons::All
                                                : OverlayContent::Icons::Missing);
        if (asked_ != question)
            ask(question);
    } catch (const std::exception &) {
        // The store has logged it. The figures stay as they are.
    }
}

void OverlayWindow::ask(const Question &question)
{
    asked_ = question;
    asker_.ask(
        [chains = question.chains](const data::TallyDb &db, const queries::IsOutdated &) {
            return Answer{db.summary(chains), db.loot_stats(chains)};
        },
        [this](Answer answer) {
            answer_ = std::move(answer);
            show_answer();
            fit_height();
        },
        [this](const QString &) { asked_.reset(); });
}

void OverlayWindow::show_answer()
{
    if (answer_)
        content_->show_values(
            overlay_figures(mode_, answer_->summary, answer_->loot, [](auto type, auto subtype) {
                return data::MasterCache::instance().item(type, subtype);
            }));
}

void OverlayWindow::fit_height()
{
    content_->layout()->activate(); // which tells the layout around it
    if (!layout()->hasHeightForWidth())
        return;
    layout()->activate();
    resize(width(), layout()->totalHeightForWidth(width()));
}

void OverlayWindow::pin_tick()
{
    apply_pin_step(pin_.tick(overlay_view(*this)), *this);
}

void OverlayWindow::mousePressEvent(QMouseEvent *event)
{
    drag_.press(*event);
    event->accept();
}

void OverlayWindow::mouseReleaseEvent(QMouseEvent *event)
{
    drag_.release();
    event->accept();
}

void OverlayWindow::mouseMoveEvent(QMouseEvent *event)
{
    drag_.move(*event);
    event->accept();
}

void OverlayWindow::closeEvent(QCloseEvent *event)
{
    closing_ = true;
    pin_.begin_close();
    refresh_timer_.stop();
    pin_timer_.stop();
    if (persist_visibility_on_close_)
        around_.settings.set(settings::overlay_visible, false);
    Q_EMIT overlayClosed();
    QWidget::closeEvent(event);
}

void OverlayWindow::contextMenuEvent(QContextMenuEvent *event)
{
    drag_.release(); // the menu takes the mouse, and with it the button's release
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Refresh now"), this, &OverlayWindow::refresh_data);
    menu->addSeparator();
    add_modes(*menu, around_.settings, settings::overlay_mode, overlay_modes, overlay_menu_key);
    add_font_sizes(*menu, around_.settings, settings::overlay_font_size);
    add_pin_actions(*menu, pin_, around_.settings, *this);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Close overlay"), this, &QWidget::close);
    menu->popup(event->globalPos());
    event->accept();
}

} // namespace tally::ui
