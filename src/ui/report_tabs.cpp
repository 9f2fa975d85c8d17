#include "report_tabs.h"

#include "logo.h"
#include "report_tab.h"

#include <QPainter>

namespace tally::ui {
namespace {

constexpr char16_t greeting[] =
    u"Drop mails of the game here, or choose File → Reimport mailcache.";

void paint_greeting(QPainter &painter, const QRect &area)
{
    constexpr int logo_size = 128;
    constexpr int gap = 24;
    const QPoint centre = area.center();
    const QRect mark(centre.x() - logo_size / 2, centre.y() - logo_size, logo_size, logo_size);
    painter.setOpacity(0.85);
    logo().paint(&painter, mark);
    painter.setOpacity(0.7);
    painter.drawText(QRect(area.left(), mark.bottom() + gap, area.width(), area.height()),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                     QString::fromUtf16(greeting));
}

} // namespace

ReportTabs::ReportTabs(QWidget *parent) : QTabWidget(parent)
{
    setAccessibleName(QStringLiteral("Reports"));
    setAccessibleDescription(QString::fromUtf16(greeting));
}

void ReportTabs::add(ReportTab *tab, const QString &title)
{
    addTab(tab, title);
}

void ReportTabs::refresh_all()
{
    for (int i = 0; i < count(); ++i) {
        if (auto *tab = qobject_cast<ReportTab *>(widget(i)))
            tab->refresh();
    }
}

void ReportTabs::paintEvent(QPaintEvent *event)
{
    QTabWidget::paintEvent(event);
    if (count() > 0)
        return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    paint_greeting(painter, rect());
}

} // namespace tally::ui
