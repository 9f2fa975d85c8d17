#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QStatusBar;

namespace tally::ui {

class StartUpChain;

/// Stands in the status bar as long as the reference data could not be refreshed, and lets the user
/// try again.
class RefreshMark : public QWidget {
    Q_OBJECT

public:
    /// \param chain outlives the mark
    RefreshMark(StartUpChain &chain, QStatusBar &bar);

private:
    void on_refresh_ended(bool success);
    void on_message(const QString &text);
    void try_again();

    StartUpChain &chain_;
    QStatusBar &bar_;
    QLabel *text_;
    QPushButton *button_;
    bool to_repeat_ = false;
};

} // namespace tally::ui
