#pragma once

#include <QDeadlineTimer>
#include <QTabWidget>

namespace tally::ui {

class ReportTab;

/// The pages of the main window.
class ReportTabs : public QTabWidget {
    Q_OBJECT

public:
    explicit ReportTabs(QWidget *parent);

    void add(ReportTab *tab, const QString &title);
    /// Refreshes each page, in their order.
    void refresh_all();
    /// Asks the threads of all pages to end. \return whether all have ended in time.
    bool end_all(QDeadlineTimer deadline);

private:
    QList<ReportTab *> pages() const;
};

} // namespace tally::ui
