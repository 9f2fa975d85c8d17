#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QString>

#include <functional>

namespace tally::ui {

bool is_folder(const QString &path);

/// Finds out whether a folder is there without stopping the window: a drive whose network does not
/// answer can take half a minute.
class FolderProbe : public QObject {
    Q_OBJECT

public:
    /// \param is_there is called on threads of the pool, one at a time
    explicit FolderProbe(QObject *parent,
                         std::function<bool(const QString &)> is_there = is_folder);

    /// Waits a moment, so that what is said of a folder of this machine is told before this
    /// returns. Of those that are asked for during a look, only the last is looked for.
    void look(const QString &folder);

Q_SIGNALS:
    void looked(bool is_there); ///< the last folder that was asked for

private:
    void begin();
    void tell(bool is_there);

    std::function<bool(const QString &)> is_there_;
    QString wanted_;
    QString looking_for_;
    bool looking_ = false;
    QFutureWatcher<bool> watcher_;
};

} // namespace tally::ui
