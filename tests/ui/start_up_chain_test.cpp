#include "queries/asker.h"
#include "support/plain_connection.h"
#include "support/small_mails.h"
#include "support/window_fixture.h"
#include "ui/bootstrap_import_worker.h"
#include "ui/loading_splash.h"
#include "ui/refresh_mark.h"

#include <QDir>
#include <QPushButton>
#include <QSemaphore>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

/// A refresh that does not end before it is let go, whoever asks.
class HangingRefresh : public QuickRefresh {
    Q_OBJECT

public:
    explicit HangingRefresh(std::shared_ptr<QSemaphore> let_go)
        : QuickRefresh(true), let_go_(std::move(let_go))
    {}

public Q_SLOTS:
    void run()
    {
        let_go_->acquire();
        QuickRefresh::run();
    }

private:
    std::shared_ptr<QSemaphore> let_go_;
};

class StartUp : public testing::Test {
protected:
    ui::MainWindow &open()
    {
        ui::MainWindow &window = fixture_.open();
        tab_ = new CountingTab;
        window.tabs().add(tab_, u"counts"_s);
        QObject::connect(&window.chain(), &ui::StartUpChain::message, &window,
                         [this](const QString &text, int ms) {
                             messages_.push_back(u"%1 (%2)"_s.arg(text).arg(ms).toStdString());
                         });
        window.show();
        window.run_post_startup();
        return window;
    }

    /// Makes the refresh hang. \return what lets it go.
    std::shared_ptr<QSemaphore> hang()
    {
        auto let_go = std::make_shared<QSemaphore>();
        fixture_.setup.refresh = [let_go](ui::StartUpChain &chain) {
            chain.start_refresh(new HangingRefresh(let_go));
        };
        return let_go;
    }

    void add(int number) { fixture_.mails.add(u"Persistent.Mail.%1"_s.arg(number), fort_mail()); }
    static bool has_splash(const ui::MainWindow &window)
    {
        return window.findChild<ui::LoadingSplash *>() != nullptr;
    }

    WindowFixture fixture_;
    CountingTab *tab_ = nullptr;
    std::vector<std::string> messages_;
};

} // namespace

TEST_F(StartUp, EachLinkStartsTheNext)
{
    add(1);
    const ui::MainWindow &window = open();
    EXPECT_TRUE(has_splash(window));
    ASSERT_TRUE(wait_until([&] { return fixture_.open_chain().watching(); }));
    EXPECT_FALSE(has_splash(window));
    EXPECT_THAT(messages_,
                ElementsAre("Downloading heroes... (4000)", "Import: 1/1 (100%) — new: 1 (4000)",
                            "Bootstrap done: scanned=1  imported=1  errors=0. "
                            "Monitoring active. (8000)"));
    EXPECT_EQ(tab_->refreshes, 2); // for the names, for the first import
}

TEST_F(StartUp, AMailThatCouldNotBeStoredIsTold)
{
    add(1);
    PlainConnection(fixture_.store.path)
        .rows(u"CREATE TRIGGER full BEFORE INSERT ON fort_loot BEGIN SELECT RAISE(ABORT, 'no "
              "room'); END"_s);
    open();
    ASSERT_TRUE(wait_until([&] { return fixture_.open_chain().watching(); }));
    EXPECT_THAT(messages_.back(), StartsWith("Bootstrap done: scanned=1  imported=0  errors=0. "
                                             "Monitoring active. 1 mail could not be stored (no"));
    int number = 1; // the first ones may come before the watcher has looked for the first time
    EXPECT_TRUE(wait_until([&] {
        add(++number);
        return messages_.back().starts_with("1 mail could not be stored (no room");
    }));
}

TEST_F(StartUp, NewMailsArriveByThemselves)
{
    open();
    ASSERT_TRUE(wait_until([&] { return fixture_.open_chain().watching(); }));
    int number = 0; // the first ones may come before the watcher has looked for the first time
    ASSERT_TRUE(wait_until([&] {
        add(++number);
        return QString::fromStdString(messages_.back())
            .contains(u" new report(s) imported. (4000)");
    }));
    EXPECT_GE(tab_->refreshes, 3);
}

TEST_F(StartUp, AFailedRefreshIsMarkedAndCanBeTriedAgainAndTheImportStartsAllTheSame)
{
    const auto success = std::make_shared<bool>(false);
    fixture_.setup.refresh = [success](ui::StartUpChain &chain) {
        chain.start_refresh(new QuickRefresh(*success));
    };
    const ui::MainWindow &window = open();
    const auto *mark = window.findChild<ui::RefreshMark *>();
    EXPECT_FALSE(mark->isVisible());
    ASSERT_TRUE(wait_until([&] { return fixture_.open_chain().watching(); }));
    EXPECT_THAT(messages_, Contains("Master refresh failed — tabs will show raw IDs. (8000)"));
    EXPECT_TRUE(mark->isVisible());
    ASSERT_TRUE(wait_until([&] { return !fixture_.open_chain().importing(); }));
    EXPECT_EQ(tab_->refreshes, 1) << "for the import alone";
    window.statusBar()->clearMessage(); // as if "Bootstrap done" had stood its time
    EXPECT_EQ(fixture_.message(), "Master refresh failed — tabs will show raw IDs.");

    messages_.clear();
    for (const bool outcome : {false, true}) {
        *success = outcome;
        mark->findChild<QPushButton *>()->click();
        EXPECT_FALSE(has_splash(window));
        ASSERT_TRUE(wait_until([&] { return mark->findChild<QPushButton *>()->isEnabled(); }));
        EXPECT_EQ(mark->isVisible(), !outcome);
    }
    EXPECT_EQ(tab_->refreshes, 2);
    EXPECT_THAT(messages_, ElementsAre("Downloading heroes... (4000)",
                                       "Master refresh failed — tabs will show raw IDs. (8000)",
                                       "Downloading heroes... (4000)"));
}

TEST_F(StartUp, AMissingFolderEndsTheChainWithAWordWhereToSetIt)
{
    fixture_.store.db.set_setting(u"mailcache_dir"_s, u"/no/such/folder"_s);
    ui::MainWindow &window = open();
    QSignalSpy done(&window.chain(), &ui::StartUpChain::refreshDone);
    ASSERT_TRUE(done.wait(30'000));
    EXPECT_EQ(messages_.back(), "Mailcache folder not found: /no/such/folder "
                                "(File → Settings to change) (10000)");
    EXPECT_FALSE(window.chain().watching());
}

TEST_F(StartUp, AnEmptyFolderSettingTakesTheDefault)
{
    fixture_.store.db.set_setting(u"mailcache_dir"_s, {});
    QSignalSpy done(&open().chain(), &ui::StartUpChain::refreshDone);
    ASSERT_TRUE(done.wait(30'000));
    EXPECT_EQ(fixture_.setting(u"mailcache_dir"_s),
              platform::default_mailcache_dir().toStdString());
}

TEST_F(StartUp, ARefreshThatTakesTooLongLosesItsSplashOnly)
{
    const auto let_go = hang();
    fixture_.setup.splash_limit = 1ms;
    ui::MainWindow &window = open();
    EXPECT_TRUE(wait_until([&] { return !has_splash(window); }));
    window.run_post_startup(); // runs already
    EXPECT_FALSE(has_splash(window));
    let_go->release();
    EXPECT_TRUE(wait_until([&] { return window.chain().watching(); }));
}

TEST_F(StartUp, ClosingStopsTheWatcher)
{
    ui::MainWindow &window = open();
    ASSERT_TRUE(wait_until([&] { return window.chain().watching(); }));
    window.close();
    EXPECT_FALSE(window.chain().watching());
    fixture_.destroy();
    EXPECT_EQ(fixture_.hard_exits(), 0);
}

TEST_F(StartUp, AWorkerThatHangsIsLeftBehindAtTheDeadline)
{
    const auto let_go = hang();
    fixture_.setup.exit_deadline = 10ms;
    const auto left_hard = std::make_shared<int>(0);
    fixture_.setup.hard_exit = [left_hard, let_go] {
        ++*left_hard;
        let_go->release();
    };
    open().request_exit();
    fixture_.destroy();
    EXPECT_EQ(*left_hard, 1);
}

TEST_F(StartUp, AllAreAskedToEndBeforeTheFirstIsWaitedFor)
{
    const auto let_go = hang(); // until the query has ended
    queries::Asker asker(fixture_.queries);
    QSemaphore asked;
    open();
    asker.ask(
        [let_go, &asked](const data::TallyDb &, const queries::IsOutdated &is_outdated) {
            asked.release();
            while (!is_outdated())
                QThread::yieldCurrentThread();
            let_go->release();
            return 0;
        },
        [](int) {});
    asked.acquire();
    fixture_.destroy();
    EXPECT_EQ(fixture_.hard_exits(), 0);
}

TEST_F(StartUp, AnEventLoopThatStillRunsAtTheDeadlineIsCutOff)
{
    fixture_.setup.exit_deadline = 10ms;
    open().request_exit();
    EXPECT_TRUE(wait_until([&] { return fixture_.hard_exits() == 1; }));
}

TEST_F(StartUp, AnExitBehindTheSplashClosesBoth)
{
    const auto let_go = hang();
    ui::MainWindow &window = open();
    window.request_exit();
    EXPECT_FALSE(window.isVisible());
    EXPECT_NE(fixture_.setting(u"window_geometry_qt"_s), "<none>");
    let_go->release();
}

TEST(BootstrapImport, ItEndsBeforeTheNextFileWhenTheProgramLeaves)
{
    TempStore store;
    const TempMails mails;
    mails.add(u"Persistent.Mail.1"_s, fort_mail());
    const std::atomic<bool> leaving = true;
    ui::BootstrapImportWorker worker(mails.path(), {}, &store.db, &leaving);
    QSignalSpy done(&worker, &ui::BootstrapImportWorker::bootstrapDone);
    worker.run();
    EXPECT_EQ(done.first(), (QList<QVariant>{0, 0, 0}));
}

#include "start_up_chain_test.moc"
