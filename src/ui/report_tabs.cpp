#include "ui/report_tabs.h"

#include "ui/parts/emoji_style.h"
#include "ui/parts/report_tab.h"

#include <QTabBar>

namespace tally::ui {

ReportTabs::ReportTabs(QWidget *parent) : QTabWidget(parent)
{
    setAccessibleName(QStringLiteral("Reports"));
    auto *style = new EmojiStyle;
    style->setParent(this);
    tabBar()->setStyle(style);
}

void ReportTabs::add(ReportTab *tab, const QString &title)
{
    addTab(tab, title);
}

QList<ReportTab *> ReportTabs::pages() const
{
    QList<ReportTab *> pages;
    for (int i = 0; i < count(); ++i) {
        if (auto *page = qobject_cast<ReportTab *>(widget(i)))
            pages << page;
    }
    return pages;
}

void ReportTabs::refresh_all()
{
    for (ReportTab *page : pages())
        page->refresh();
}

} // namespace tally::ui
