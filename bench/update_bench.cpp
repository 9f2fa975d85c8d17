// How fast an update of 200 MB comes, measured against curl and sha256sum in the same run, and the
// longest stop of the window while the dialog downloads it.

#include "data/store/tally_db.h"
#include "figure.h"
#include "platform/updater/download.h"
#include "ui/parts/theme.h"
#include "ui/update/download_worker.h"
#include "ui/update/update_dialog.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace tally;
using namespace tally::bench;

constexpr qint64 megabytes = 200;
constexpr int rounds = 5;
constexpr quint32 program_head = 0x464c'457f; // "\x7f" "ELF": the install takes nothing else

const QString keys = QStringLiteral(TALLY_BENCH_KEYS);

/// A server of one file, in a process of its own.
class Server {
public:
    Server()
    {
        write_file();
        process_.start(QStringLiteral(TALLY_REFERENCE_SERVER), {folder_.path(), keys});
        if (!process_.waitForReadyRead(30'000))
            throw std::runtime_error("the reference server does not start");
        address_ = QString::fromLatin1(process_.readLine().trimmed());
    }
    ~Server()
    {
        process_.kill();
        process_.waitForFinished();
    }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    QString url() const { return address_ + QStringLiteral("/updates/payload.zip"); }
    QString sha256() const { return sha256_; }

private:
    void write_file()
    {
        QDir(folder_.path()).mkpath(QStringLiteral("updates"));
        QFile file(folder_.filePath(QStringLiteral("updates/payload.zip")));
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("cannot write the payload");
        QRandomGenerator random(1);
        QCryptographicHash hash(QCryptographicHash::Sha256);
        std::vector<quint32> piece((1 << 20) / sizeof(quint32));
        for (qint64 i = 0; i < megabytes; ++i) {
            random.fillRange(piece.data(), static_cast<qsizetype>(piece.size()));
            if (i == 0)
                piece.front() = program_head;
            const auto bytes =
                QByteArray::fromRawData(reinterpret_cast<const char *>(piece.data()), 1 << 20);
            hash.addData(bytes);
            file.write(bytes);
        }
        sha256_ = QString::fromLatin1(hash.result().toHex());
    }

    QTemporaryDir folder_;
    QProcess process_;
    QString address_;
    QString sha256_;
};

platform::Endpoint endpoint()
{
    platform::Endpoint result;
    result.authority_file = keys + QStringLiteral("/authority.pem");
    return result;
}

double rate(const QElapsedTimer &timer)
{
    return static_cast<double>(megabytes) * 1e9 / static_cast<double>(timer.nsecsElapsed());
}

double rate_of_curl(const Server &server)
{
    QElapsedTimer timer;
    timer.start();
    QProcess shell;
    shell.start(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("curl -sS --cacert %1/authority.pem %2 | "
                                                      "sha256sum")
                                           .arg(keys, server.url())});
    if (!shell.waitForFinished(600'000) ||
        !shell.readAllStandardOutput().startsWith(server.sha256().toLatin1()))
        throw std::runtime_error("curl fails");
    return rate(timer);
}

/// Download, hash, and the second look at the file, as the dialog has them done.
double rate_of_worker(const Server &server)
{
    const QTemporaryDir folder;
    ui::DownloadWorker worker({.url = server.url(),
                               .dest_path = folder.filePath(QStringLiteral("payload.zip")),
                               .sha256 = server.sha256(),
                               .endpoint = endpoint()},
                              nullptr);
    bool is_ok = false;
    QObject::connect(&worker, &ui::DownloadWorker::finished, [&](bool ok) { is_ok = ok; });
    QElapsedTimer timer;
    timer.start();
    worker.run();
    if (!is_ok)
        throw std::runtime_error("the download fails");
    return rate(timer);
}

/// The longest time that a thread was kept waiting which wakes each millisecond and does nothing:
/// what the machine's other work costs in the same moments.
class Bystander {
public:
    Bystander()
        : thread_([this](const std::stop_token &stop) {
              QElapsedTimer timer;
              while (!stop.stop_requested()) {
                  timer.start();
                  std::this_thread::sleep_for(std::chrono::milliseconds(1));
                  longest_ = std::max(longest_, static_cast<double>(timer.nsecsElapsed()) / 1e6);
              }
          })
    {}

    double longest_milliseconds()
    {
        thread_.request_stop();
        thread_.join();
        return longest_;
    }

private:
    double longest_ = 0.0;
    std::jthread thread_;
};

/// The longest time between two beats of a timer of the window's thread, from the click on the
/// button until the script would run.
double longest_stop_milliseconds(const Server &server)
{
    const QTemporaryDir folder;
    data::TallyDb db(folder.filePath(QStringLiteral("tally.db")));
    db.init_schema();
    ui::UpdateSetup setup{.endpoint = endpoint()};
    setup.updates_dir = folder.filePath(QStringLiteral("data/updates"));
    bool has_ended = false;
    setup.tools.lack = [](platform::Updater::UpdateForm) {
        return QString();
    };
    setup.tools.start = [&](const QString &) {
        return has_ended = true;
    };
    ui::UpdateDialog dialog({{QStringLiteral("version"), QStringLiteral("v9")},
                             {QStringLiteral("download_url"), server.url()},
                             {QStringLiteral("sha256"), server.sha256()}},
                            &db, folder.filePath(QStringLiteral("program")), false, nullptr, setup);
    dialog.show();
    QCoreApplication::processEvents();

    double longest = 0.0;
    QElapsedTimer since_beat;
    QTimer heartbeat;
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        longest = std::max(longest, static_cast<double>(since_beat.nsecsElapsed()) / 1e6);
        since_beat.start();
    });
    heartbeat.start(1);
    since_beat.start();
    QMetaObject::invokeMethod(&dialog, "on_download", Qt::QueuedConnection);
    while (!has_ended)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return longest;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ui::apply_to_app(&application, 0);
    const Server server;
    std::vector<double> ratios;
    std::vector<double> stops;
    for (int i = 0; i < rounds; ++i) {
        const double curl = rate_of_curl(server);
        const double ours = rate_of_worker(server);
        ratios.push_back(ours / curl);
        Bystander bystander;
        stops.push_back(longest_stop_milliseconds(server));
        std::printf("curl | sha256sum %.0f MB/s, we %.0f MB/s, longest stop %.1f ms, of an idle "
                    "thread %.1f ms\n",
                    curl, ours, stops.back(), bystander.longest_milliseconds());
        std::fflush(stdout);
    }
    print_figure("update_rate_to_curl", median(ratios), Goal::at_least, 0.5);
    print_figure("update_longest_stop_milliseconds", median(stops), Goal::at_most, 16);
}
