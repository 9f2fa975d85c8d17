#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>

class QMainWindow;
class QMessageBox;

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

/// Notices that the store's file was removed or replaced under the running program, says so once,
/// and offers to start again, also later by a button in the status bar.
class LostStoreNotice : public QObject {
    Q_OBJECT

public:
    /// \param db outlives the notice
    /// \param window that tells it; owns the notice
    /// \param interval between two looks at the file
    LostStoreNotice(const data::TallyDb &db, QMainWindow *window,
                    std::chrono::milliseconds interval);

Q_SIGNALS:
    void restartWanted();

private:
    void look();
    void tell();

    const data::TallyDb &db_;
    QMainWindow *window_;
    QTimer timer_;
    QPointer<QMessageBox> box_;
    int misses_ = 0;
};

} // namespace tally::ui
