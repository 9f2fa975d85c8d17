#include "report_tabs.h"

#include "logo.h"
#include "report_tab.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tally::ui {
namespace {

QWidget *new_greeting(QWidget *parent)
{
    constexpr int logo_size = 128;
    auto *mark = new QLabel;
    mark->setPixmap(logo().pixmap(logo_size));
    mark->setAlignment(Qt::AlignCenter);
    auto *text = new QLabel(QStringLiteral("Drop mails of the game here, or choose\n"
                                           "File → Reimport mailcache."));
    text->setTextFormat(Qt::PlainText);
    text->setAlignment(Qt::AlignCenter);

    auto *greeting = new QWidget(parent);
    auto *layout = new QVBoxLayout(greeting);
    layout->addStretch(2);
    layout->addWidget(mark);
    layout->addSpacing(24);
    layout->addWidget(text);
    layout->addStretch(3);
    return greeting;
}

} // namespace

ReportTabs::ReportTabs(QWidget *parent) : QTabWidget(parent), greeting_(new_greeting(this))
{
    setAccessibleName(QStringLiteral("Reports"));
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

void ReportTabs::resizeEvent(QResizeEvent *event)
{
    QTabWidget::resizeEvent(event);
    greeting_->setGeometry(rect());
}

void ReportTabs::tabInserted(int index)
{
    QTabWidget::tabInserted(index);
    greeting_->setVisible(count() == 0);
}

void ReportTabs::tabRemoved(int index)
{
    QTabWidget::tabRemoved(index);
    greeting_->setVisible(count() == 0);
}

} // namespace tally::ui
