#include "honor/sync_worker.h"

#include "platform/log/error_stream.h"

#include <exception>
#include <utility>

namespace tally::honor {

SyncWorker::SyncWorker(std::shared_ptr<RollReader> reader, QString player_name,
                       std::optional<Names> markers, QObject *parent)
    : QThread(parent), reader_(std::move(reader)), player_name_(std::move(player_name)),
      markers_(std::move(markers))
{}

void SyncWorker::run()
{
    try {
        read();
    } catch (const std::exception &failure) {
        Q_EMIT errorOccurred(platform::text_of(failure));
    } catch (...) {
        Q_EMIT errorOccurred(QStringLiteral("unknown exception in SyncWorker"));
    }
    if (stop_.stop_requested())
        reader_->detach();
}

void SyncWorker::read()
{
    if (markers_)
        reader_->set_markers(markers_->player, markers_->enemy1, markers_->enemy2);
    Result result;
    result.read = reader_->read_honor_roll(player_name_, stop_.get_token());
    result.state = reader_->state();
    if (result.read || !stop_.stop_requested())
        Q_EMIT resultReady(std::move(result));
}

} // namespace tally::honor
