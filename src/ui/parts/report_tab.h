#pragma once

#include <QWidget>

namespace tally::ui {

/// A page of the main window that shows what the store holds.
class ReportTab : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Reads the store again and shows what it holds now; what nobody sees it reads and shows when
    /// it is seen (`ViewAsker`).
    virtual void refresh() = 0;

Q_SIGNALS:
    void mailFolderWanted(); ///< the user wants to choose the folder that mails come from
};

} // namespace tally::ui
