#pragma once

#include "honor/roll_reader.h"

#include <QThread>

#include <memory>
#include <optional>
#include <stop_token>

namespace tally::honor {

/// Reads the honor roll once, on a thread of its own.
class SyncWorker : public QThread {
    Q_OBJECT

public:
    struct Result {
        std::optional<ReadResult> read;
        ReaderState state = ReaderState::Ok;
    };
    struct Names {
        QString player;
        QString enemy1;
        QString enemy2;
    };

    /// \param reader is the worker's alone until it has finished
    /// \param markers none: those of an earlier read
    SyncWorker(std::shared_ptr<RollReader> reader, QString player_name,
               std::optional<Names> markers, QObject *parent);

    /// Ends the read soon, without a result. The worker lets the game's process go.
    void request_stop() { stop_.request_stop(); }

Q_SIGNALS:
    void resultReady(tally::honor::SyncWorker::Result payload);
    void errorOccurred(const QString &msg);

protected:
    void run() override;

private:
    void read();

    // Shared with the service, which may not outlive a read that hangs.
    std::shared_ptr<RollReader> reader_;
    QString player_name_;
    std::optional<Names> markers_;
    std::stop_source stop_;
};

} // namespace tally::honor
