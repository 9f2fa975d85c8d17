#pragma once

#include <QDeadlineTimer>
#include <QWidget>

namespace tally::ui {

/// A page of the main window that shows what the store holds.
class ReportTab : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Reads the store again and shows what it holds now.
    virtual void refresh() = 0;

    /// Asks the page's threads to end. \return whether all have ended in time.
    virtual bool end(QDeadlineTimer) { return true; }
};

} // namespace tally::ui
