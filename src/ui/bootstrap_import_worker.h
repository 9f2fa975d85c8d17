#pragma once

#include <QObject>
#include <QString>

#include <atomic>

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

/// Imports the mail folder once, on the thread that it was moved to.
class BootstrapImportWorker : public QObject {
    Q_OBJECT

public:
    /// \param db outlives the worker
    /// \param cancel ends the import after the file in hand; outlives the worker
    BootstrapImportWorker(QString mailcache_dir, QString raw_dir, data::TallyDb *db,
                          const std::atomic<bool> *cancel);

Q_SIGNALS:
    void progress(int scanned, int total, int imported);
    void statusMessage(QString msg);
    void bootstrapDone(int scanned, int imported, int errors);
    /// Before `bootstrapDone`, if its counters do not tell all: for the user, in whole sentences.
    void incomplete(QString trouble);

public Q_SLOTS:
    void run();

private:
    QString mailcache_dir_;
    QString raw_dir_;
    data::TallyDb *db_;
    const std::atomic<bool> *cancel_;
};

} // namespace tally::ui
