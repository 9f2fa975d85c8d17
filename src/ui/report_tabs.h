#pragma once

#include <QTabWidget>

namespace tally::ui {

class ReportTab;

/// The pages of the main window. Without any it shows how mails get in.
class ReportTabs : public QTabWidget {
    Q_OBJECT

public:
    explicit ReportTabs(QWidget *parent);

    void add(ReportTab *tab, const QString &title);
    /// Refreshes each page, in their order.
    void refresh_all();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void tabInserted(int index) override;
    void tabRemoved(int index) override;

private:
    QWidget *greeting_;
};

} // namespace tally::ui
