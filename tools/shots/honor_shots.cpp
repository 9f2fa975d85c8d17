#include "honor_shots.h"

#include "album.h"
#include "busy_picture.h"
#include "honor/honor_summary_service.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "sample_store.h"
#include "settings/settings.h"
#include "ui/honor/honor_discrepancy_history_dialog.h"
#include "ui/honor/honor_summary_overlay.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSqlQuery>
#include <QVariant>

#include <vector>

namespace tally::tools {
namespace {

using honor::ReaderState;

/// Gives whatever stands in it.
class SetReader : public honor::RollReader {
public:
    ReaderState outcome = ReaderState::Ok;
    std::optional<honor::ReadResult> result;

    void set_markers(const QString &, const QString &, const QString &) override {}
    std::optional<honor::ReadResult> read_honor_roll(const QString &, std::stop_token) override
    {
        return result;
    }
    ReaderState state() const override { return outcome; }
    void detach() override {}
};

/// A roll in which the player stands at `rank`, some hours before the end of the sample mails.
honor::ReadResult roll_at(int rank)
{
    const struct {
        const char *name;
        std::int64_t honor;
    } people[] = {
        {"Łukasz the Unyielding of the North", 642'300}, {"北風の狼", 612'000}, {"Ümit", 611'400}};
    honor::ReadResult read;
    read.own_rank = rank;
    read.own_honor = 611'350;
    read.started_at = SampleStore::end - 3 * 3'600.0;
    read.elapsed = 0.4;
    for (int place = 1; place < rank; ++place)
        read.entries.push_back(
            {0, QString::fromUtf8(people[place - 1].name), people[place - 1].honor, place, {}});
    read.entries.push_back({0, QStringLiteral("Me"), read.own_honor, rank, {}});
    return read;
}

/// One tracker of the shots, which is read when it is told to.
class Tracker {
public:
    Tracker(const Album &album, SampleStore &store)
        : album_(album), queries_(store.db(), std::chrono::seconds(5)),
          settings_(store.db()), around_{.db = store.db(),
                                         .queries = queries_,
                                         .settings = settings_,
                                         .host = host_,
                                         .clock =
                                             [] {
                                                 return SampleStore::end;
                                             }},
          service_(store.db(), queries_, reader_, around_.clock), overlay_(around_, &service_)
    {
        overlay_.show();
    }

    honor::HonorSummaryService &service() { return service_; }
    honor::HonorSummaryOverlay &overlay() { return overlay_; }
    const ui::Surroundings &around() const { return around_; }

    void read(ReaderState outcome, std::optional<honor::ReadResult> result)
    {
        wait_until_idle();
        reader_->outcome = outcome;
        reader_->result = std::move(result);
        service_.trigger_sync();
        wait_until_idle();
    }
    void take(const char *name)
    {
        album_.add(QStringLiteral("honor-") + QLatin1StringView(name), over_busy(overlay_));
    }

private:
    void wait_until_idle()
    {
        do
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        while (service_.snapshot().running);
        QCoreApplication::processEvents();
    }

    const Album &album_;
    queries::StoreQueries queries_;
    Settings settings_;
    platform::FakeHost host_;
    std::shared_ptr<SetReader> reader_ = std::make_shared<SetReader>();
    ui::Surroundings around_;
    honor::HonorSummaryService service_;
    honor::HonorSummaryOverlay overlay_;
};

void take_history(const Album &album, Tracker &tracker, const char *name)
{
    honor::HonorDiscrepancyHistoryDialog dialog(tracker.around());
    dialog.setAttribute(Qt::WA_DeleteOnClose, false); // the store's thread goes before that
    dialog.show();
    QCoreApplication::processEvents();
    album.add(QStringLiteral("honor-history-") + QLatin1StringView(name), dialog.grab());
}

/// A few days of readings.
void fill_log(SampleStore &store)
{
    QSqlQuery insert(store.db().connection());
    insert.prepare(QStringLiteral("INSERT INTO honor_summary_log VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
    double time = SampleStore::end - 4 * 86'400;
    int honor = 598'000;
    for (const int discrepancy : {0, 20, 20, -10, 0, 64, 16, 0, 0, 20, -20, 22}) {
        const int delta = 350 + 7 * discrepancy;
        for (const QVariant &value :
             {QVariant(time), QVariant(time - 20'000), QVariant(honor), QVariant(time),
              QVariant(honor + delta + discrepancy), QVariant(delta), QVariant(honor + delta),
              QVariant(discrepancy)})
            insert.addBindValue(value);
        insert.exec();
        time += 20'000 + 700 * discrepancy;
        honor += delta + discrepancy;
    }
}

} // namespace

void take_honor_tracker(const Album &album, SampleStore &store)
{
    Tracker tracker(album, store);
    tracker.take("starting");
    tracker.read(ReaderState::Ok, {});
    tracker.take("no-data");
    tracker.read(ReaderState::Ok, roll_at(4));
    tracker.take("rivals");
    for (const int size : {8, 26}) {
        tracker.overlay().set_font_size(size);
        tracker.take(size == 8 ? "small" : "large");
    }
    tracker.overlay().set_font_size(10);
    tracker.read(ReaderState::GameNotFound, {});
    tracker.take("no-game");
    tracker.read(ReaderState::NeedsAdmin, {});
    tracker.take("admin");
    tracker.read(ReaderState::Ok, roll_at(1));
    tracker.take("first");
    Q_EMIT tracker.service().stateChanged(
        QStringLiteral("Honor Tracker needs field reports for at least 2 distinct enemies to "
                       "auto-derive scan markers. Import more reports."));
    tracker.take("few-reports");

    take_history(album, tracker, "empty");
    fill_log(store);
    take_history(album, tracker, "rows");
    QSqlQuery(store.db().connection()).exec(QStringLiteral("DELETE FROM honor_summary_log"));
}

} // namespace tally::tools
