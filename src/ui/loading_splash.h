#pragma once

#include <QDialog>
#include <QElapsedTimer>

#include <chrono>

class QLabel;
class QProgressBar;

namespace tally::ui {

/// Covers the window while reference data is fetched. It deletes itself when it closes.
class LoadingSplash : public QDialog {
    Q_OBJECT

public:
    /// How long it stands at least, so that it does not flash up.
    static constexpr std::chrono::milliseconds shipped_minimum{1'500};

    LoadingSplash(QWidget *parent, const QString &status_text,
                  std::chrono::milliseconds minimum = shipped_minimum);

    void set_status(const QString &text);
    /// Closes it, now or as soon as it has stood long enough.
    void finish();

protected:
    /// It closes when the program says so, not by a button of the window manager.
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *status_label_;
    QProgressBar *progress_;
    std::chrono::milliseconds minimum_;
    QElapsedTimer shown_timer_;
};

} // namespace tally::ui
