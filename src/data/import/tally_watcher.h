#pragma once

#include <QStringList>
#include <QThread>

#include <atomic>

namespace tally::data {

struct ImportTrouble;
class TallyDb;

/// A thread that polls the mail folder and imports each mail that appears after its start. A file
/// is offered to the import once, when it is first seen, whatever comes of it.
class TallyWatcher : public QThread {
    Q_OBJECT

public:
    /// \param db outlives the watcher
    /// \param raw_dir where the import keeps its copies
    /// \param poll_ms pause between two looks at the folder
    TallyWatcher(TallyDb *db, const QString &dir, QString raw_dir, int poll_ms, QObject *parent);
    /// Does what `stop_and_wait` does.
    ~TallyWatcher() override;

    /// Asks the thread to end after the file in hand.
    void request_stop() { stop_ = 1; }
    /// Does so and waits for `poll_ms` + 2000 milliseconds.
    /// \return whether it has ended.
    bool stop_and_wait();

Q_SIGNALS:
    // From the watcher's own thread.
    /// At least one report was stored since the last look: from how many files.
    void newFilesImported(int count);
    /// The import of a file threw: "%1: %2" with the file's name and the exception's text.
    void errorOccurred(QString message);
    /// Mails since the last look could not be stored: for the user, in whole sentences.
    void mailsNotStored(QString text);

protected:
    void run() override;

private:
    void pause() const;
    int import_all(const QStringList &names, ImportTrouble &trouble);

    TallyDb *db_;
    QString dir_;
    QString raw_dir_;
    qint32 poll_ms_;
    std::atomic<qint32> stop_ = 0;
};

} // namespace tally::data
