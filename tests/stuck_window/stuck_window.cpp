// A main window that leaves while its refresh hangs for ever: only the deadline can end it.

#include "data/store/tally_db.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "settings/settings.h"
#include "ui/main_window.h"
#include "ui/start_up_chain.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <semaphore>

namespace {

class StuckRefresh : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void statusMessage(QString msg);
    void masterRefreshDone(bool success);

public Q_SLOTS:
    void run()
    {
        std::binary_semaphore never(0);
        never.acquire();
    }
};

} // namespace

int main(int argc, char *argv[])
{
    using namespace tally;
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    data::TallyDb db(folder.filePath(QStringLiteral("tally.db")));
    db.init_schema();
    ui::WindowSetup setup;
    setup.exit_deadline = std::chrono::milliseconds(500);
    setup.refresh = [](ui::StartUpChain &chain) {
        chain.start_refresh(new StuckRefresh);
    };
    queries::StoreQueries queries(db);
    Settings settings(db);
    platform::FakeHost host;
    ui::MainWindow window({.db = db, .queries = queries, .settings = settings, .host = host},
                          nullptr, setup);
    window.show();
    QTimer::singleShot(0, &window, [&window] {
        window.run_post_startup();
        std::fputs("leaving\n", stderr);
        window.request_exit();
    });
    return QApplication::exec() + 1; // to come here is the fault
}

#include "stuck_window.moc"
