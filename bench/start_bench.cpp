// How the window behaves as a neighbour of the game: the time from the start of the process to the
// first painted frame on a large store, the longest stop of the window while the watcher imports,
// and what the program costs while nothing happens.

#include "data/import/tally_watcher.h"
#include "data/store/tally_db.h"
#include "figure.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "sample_world.h"
#include "settings/settings.h"
#include "support/plain_connection.h"
#include "support/x_session.h"
#include "ui/main_window.h"
#include "ui/start_up_chain.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <stdexcept>

#include <csignal>
#include <sys/resource.h>
#include <xcb/xcb.h>

namespace {

using namespace tally;
using namespace tally::bench;
using Connection =
    std::unique_ptr<xcb_connection_t, decltype([](xcb_connection_t *c) { xcb_disconnect(c); })>;

constexpr int starts = 5;
constexpr int rounds = 1'000'000;
constexpr int rounds_a_chain = 20;
constexpr int folder_size = 20'000;
constexpr int burst = 200; // mails

void insert_rounds(const QString &store)
{
    const test::PlainConnection db(store);
    db.rows(QStringLiteral("BEGIN"));
    db.rows(QStringLiteral(R"sql(
        WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < %1 - 1)
        INSERT INTO reports (file_name, round_no, npc_btype, npc_type, level, result, file_mtime,
                             imported_at, chain_start_time, chain_end_time, hero_id_1, hero_id_2,
                             damage_taken, damage_dealt, ets, player_id, player_name,
                             is_fort_round, is_free_ap)
        SELECT 'Persistent.Mail.' || (i / %2), i % %2, 1, 150000 + i % 50, i % 40, 1,
               1.7e9 + i, 1.7e9 + i, 1.7e9 + i / %2 * 200, 1.7e9 + i / %2 * 200 + 150, i % 90,
               i % 80, i % 9000, i % 900000, 1.7e9 + i, 77, 'Ada', 0, 0
        FROM n)sql")
                .arg(rounds)
                .arg(rounds_a_chain));
    db.rows(QStringLiteral("COMMIT"));
}

/// What the store holds after a year of much play.
void fill(const QString &store)
{
    data::TallyDb db(store);
    db.init_schema();
    db.set_setting(QStringLiteral("mailcache_dir"), QStringLiteral("/no/mails"));
    insert_rounds(store);
    db.complete_chain_slices();
}

/// Whether the list of hero pairs shows, dark, at the lower left of the screen.
bool painted(xcb_connection_t *connection)
{
    constexpr quint32 background = 0x2d1b3d;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_get_image_reply_t *image = xcb_get_image_reply(
        connection, xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, 100, 850, 1, 1, ~0U),
        nullptr);
    if (!image)
        return false;
    const uint8_t *pixel = xcb_get_image_data(image);
    const bool result = xcb_get_image_data_length(image) >= 4 &&
                        (pixel[0] | pixel[1] << 8 | pixel[2] << 16) == background;
    std::free(image);
    return result;
}

double start_milliseconds(const QString &folder, const test::XSession &session)
{
    const Connection connection(xcb_connect(session.display().constData(), nullptr));
    QProcessEnvironment environment = session.environment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    program.start(QDir(folder).filePath(QStringLiteral("ledgerline-tallyhand")), QStringList());
    program.waitForStarted();
    while (!painted(connection.get())) {
        if (timer.elapsed() > 60'000)
            throw std::runtime_error("no window came up");
    }
    const double elapsed = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    program.kill();
    program.waitForFinished();
    while (painted(connection.get())) {
    }
    return elapsed;
}

double start_on_a_large_store()
{
    const test::XSession session(test::XSession::Manager::None);
    if (!session.running())
        throw std::runtime_error("Xvfb does not run");
    const QTemporaryDir folder(QCoreApplication::applicationDirPath() +
                               QStringLiteral("/start-XXXXXX"));
    QDir(folder.path()).mkpath(QStringLiteral("data"));
    fill(folder.filePath(QStringLiteral("data/tally.db")));
    QFile::copy(QStringLiteral(TALLY_EXECUTABLE),
                folder.filePath(QStringLiteral("ledgerline-tallyhand")));
    std::vector<double> times;
    for (int i = 0; i < starts; ++i) {
        times.push_back(start_milliseconds(folder.path(), session));
        std::printf("start %.0f ms\n", times.back());
    }
    return median(times);
}

/// Mails that each hold a report.
void write_reports(const QDir &folder, int count)
{
    sample::SampleWorld world({.days = 60, .count = 3 * count});
    for (int written = 0; written < count;) {
        const auto mail = world.next();
        if (!mail)
            throw std::runtime_error("too few sample mails hold a report");
        if (mail->kind == sample::MailKind::Other)
            continue;
        QFile file(folder.filePath(mail->file_name));
        if (!file.open(QIODevice::WriteOnly) || file.write(mail->bytes) != mail->bytes.size())
            throw std::runtime_error("cannot write a sample mail");
        ++written;
    }
}

/// A refresh with nothing to do.
class NoRefresh : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void statusMessage(QString msg);
    void masterRefreshDone(bool success);

public Q_SLOTS:
    void run() { Q_EMIT masterRefreshDone(true); }
};

/// A window that watches a folder, its first import done.
class WatchingWindow {
public:
    explicit WatchingWindow(const QString &mails)
    {
        db_.init_schema();
        db_.set_setting(QStringLiteral("mailcache_dir"), mails);
        ui::WindowSetup setup;
        setup.refresh = [](ui::StartUpChain &chain) {
            chain.start_refresh(new NoRefresh);
        };
        window_ = std::make_unique<ui::MainWindow>(around_, nullptr, setup);
        window_->show();
        window_->run_post_startup();
        wait([this] { return window_->chain().watching(); });
        wait_seconds(4); // splash and first look are over
    }

    template <typename Condition>
    static void wait(Condition condition)
    {
        const QDeadlineTimer patience(120'000);
        QTimer clock; // an event to wake up at
        clock.start(100);
        while (!condition()) {
            if (patience.hasExpired())
                throw std::runtime_error("the window does not get on");
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    static void wait_seconds(int seconds)
    {
        QEventLoop loop;
        QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
        loop.exec();
    }

    ui::MainWindow &window() { return *window_; }

private:
    QTemporaryDir folder_;
    data::TallyDb db_{folder_.filePath(QStringLiteral("tally.db"))};
    queries::StoreQueries queries_{db_};
    Settings settings_{db_};
    platform::FakeHost host_;
    ui::Surroundings around_{.db = db_,
                             .queries = queries_,
                             .settings = settings_,
                             .host = host_,
                             .raw_dir = folder_.filePath(QStringLiteral("raw"))};
    std::unique_ptr<ui::MainWindow> window_;
};

/// The longest time between two beats of a timer of the window's thread, over the import.
double longest_stop_milliseconds()
{
    const QTemporaryDir mails;
    const QTemporaryDir fresh;
    write_reports(fresh.path(), burst);
    WatchingWindow watching(mails.path());

    double longest = 0.0;
    QElapsedTimer since_beat;
    QTimer heartbeat;
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        longest = std::max(longest, static_cast<double>(since_beat.nsecsElapsed()) / 1e6);
        since_beat.start();
    });
    int imported = 0;
    QObject::connect(&watching.window().chain(), &ui::StartUpChain::message,
                     [&](const QString &text) {
                         if (text.contains(u"new report(s)"))
                             imported += text.section(u' ', 0, 0).toInt();
                     });
    heartbeat.start(1);
    since_beat.start();
    for (const QString &name : QDir(fresh.path()).entryList(QDir::Files))
        QFile::rename(fresh.filePath(name), mails.filePath(name));
    WatchingWindow::wait([&] { return imported >= burst; });
    std::printf("%d mails imported while the heart beat\n", imported);
    return longest;
}

double cpu_seconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double idle_percent()
{
    const QTemporaryDir mails;
    for (int i = 0; i < folder_size; ++i) {
        QFile mail(mails.filePath(QStringLiteral("Persistent.Mail.%1").arg(i, 18)));
        if (!mail.open(QIODevice::WriteOnly))
            throw std::runtime_error("cannot write a mail");
    }
    const WatchingWindow watching(mails.path());
    constexpr int seconds = 60; // one listing without need is among them
    const double before = cpu_seconds();
    WatchingWindow::wait_seconds(seconds);
    return (cpu_seconds() - before) / seconds * 100.0;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    print_figure("start_milliseconds", start_on_a_large_store(), Goal::at_most, 700);
    print_figure("watcher_longest_stop_milliseconds", longest_stop_milliseconds(), Goal::at_most,
                 50);
    print_figure("idle_cpu_percent", idle_percent(), Goal::at_most, 0.5);
}

#include "start_bench.moc"
