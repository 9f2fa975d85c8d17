#include "ui/alerts/keep_toast.h"

#include "ui/alerts/alert_look.h"
#include "ui/alerts/toast_places.h"
#include "ui/parts/plain_label.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace tally::ui {

KeepToast::KeepToast(const QString &title, const QString &body, QWidget *parent) : QWidget(parent)
{
    make_alert(*this);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowFlag(Qt::WindowDoesNotAcceptFocus); // a click, too, leaves the keyboard to the game
    setAccessibleName(title);
    setAccessibleDescription(body);
    setFixedSize(380, 100);
    setStyleSheet(QStringLiteral(
        "tally--ui--KeepToast {  background: qlineargradient(x1:0, y1:0, x2:1, y2:1, "
        "    stop:0 #241012, stop:1 #180a0b);  border: 2px solid "
        "#ffcf40;}"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 10, 14, 10);
    layout->setSpacing(4);
    layout->addWidget(
        plain_label(title, QStringLiteral("color: #ffcf40; font-size: 12pt; font-weight: 700;")));
    QLabel *text = plain_label(body, QStringLiteral("color: #ffffff; font-size: 10pt;"));
    text->setWordWrap(true);
    layout->addWidget(text);
    layout->addWidget(plain_label(QStringLiteral("(click to dismiss)"),
                                  QStringLiteral("color: rgba(255,255,255,0.55); font-size: 8pt;")),
                      0, Qt::AlignRight);
}

KeepToast::~KeepToast()
{
    if (active_toasts().removeOne(this))
        stack_again();
}

QList<KeepToast *> &KeepToast::active_toasts()
{
    static QList<KeepToast *> toasts;
    return toasts;
}

void KeepToast::show_toast()
{
    slot_index_ = static_cast<int>(active_toasts().size());
    active_toasts() << this;
    // A game that changes the resolution, or a screen that goes, would leave it where nobody can
    // click.
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &KeepToast::stack_again);
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        connect(screen, &QScreen::availableGeometryChanged, this, &KeepToast::stack_again);
    stack_again();
    show();
    raise();
}

void KeepToast::stack_again()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    int number = 0;
    for (KeepToast *toast : active_toasts()) {
        toast->slot_index_ = number++;
        if (screen)
            toast->move(toast_place(toast->slot_index_, screen->availableGeometry()));
    }
}

void KeepToast::raise_all()
{
    for (KeepToast *toast : active_toasts())
        toast->raise();
}

void KeepToast::mousePressEvent(QMouseEvent *)
{
    close();
}

void KeepToast::paintEvent(QPaintEvent *)
{
    paint_alert(*this);
}

} // namespace tally::ui
