#include "ui/alerts/barbarian_keep_overlay.h"

#include "ui/alerts/alert_look.h"
#include "ui/alerts/keep_toast.h"
#include "ui/parts/plain_label.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr int largest_title = 28; ///< points
constexpr int smallest_title = 12;
const QString title_style = QStringLiteral("color: #ffcf40; font-size: %1pt; font-weight: "
                                           "800;letter-spacing: 2px;");

} // namespace

QRect banner_place(const QRect &available)
{
    const QSize size(std::min(available.width() - 80, 720), std::min(available.height() - 80, 200));
    const QPoint centre = available.center();
    return {QPoint(centre.x() - size.width() / 2, centre.y() - size.height() / 2), size};
}

BarbarianKeepOverlay::BarbarianKeepOverlay(QWidget *parent)
    : QWidget(parent), title_(plain_label(QStringLiteral("🏰  BARBARIAN KEEP AVAILABLE"),
                                          title_style.arg(largest_title))),
      body_(plain_label(QStringLiteral("please go kill — don't waste time!"),
                        QStringLiteral("color: #ffffff; font-size: 15pt; font-weight: 500;")))
{
    make_alert(*this);
    setStyleSheet(
        QStringLiteral("tally--ui--BarbarianKeepOverlay {  background: qlineargradient(x1:0, y1:0, "
                       "x2:1, y2:1,     stop:0 #601818, stop:1 #300808);  border: 3px "
                       "solid #ffcf40;}"));
    QLabel *hint = plain_label(QStringLiteral("(click anywhere to dismiss)"),
                               QStringLiteral("color: rgba(255,255,255,0.75); font-size: 9pt;"));
    setAccessibleName(title_->text());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(10);
    layout->setSizeConstraint(QLayout::SetNoConstraint); // a small screen bounds the banner
    for (QLabel *label : {title_, body_, hint}) {
        label->setAlignment(Qt::AlignCenter);
        layout->addWidget(label);
    }
}

void BarbarianKeepOverlay::show_centered()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect place = banner_place(screen->availableGeometry());
        fit_title(place.width());
        resize(place.size());
        move(place.topLeft());
    }
    show();
    raise();
    activateWindow();
    KeepToast::raise_all();
}

/// Some fonts are too wide for it.
void BarbarianKeepOverlay::fit_title(int width)
{
    const QMargins margins = layout()->contentsMargins();
    const int room = width - margins.left() - margins.right();
    for (int points = largest_title; title_->sizeHint().width() > room && points > smallest_title;)
        title_->setStyleSheet(title_style.arg(--points));
}

bool BarbarianKeepOverlay::event(QEvent *event)
{
    const bool is_taken = QWidget::event(event);
    // The window manager raises what it maps and activates.
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::Move)
        KeepToast::raise_all();
    return is_taken;
}

void BarbarianKeepOverlay::mousePressEvent(QMouseEvent *)
{
    close();
}

void BarbarianKeepOverlay::paintEvent(QPaintEvent *)
{
    paint_alert(*this);
}

} // namespace tally::ui
