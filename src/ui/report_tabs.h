#pragma once

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

private:
    QList<ReportTab *> pages() const;
};

} // namespace tally::ui
