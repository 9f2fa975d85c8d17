#pragma once

#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "settings/settings.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"
#include "ui/main_window.h"
#include "ui/parts/report_tab.h"
#include "ui/report_tabs.h"
#include "ui/start_up_chain.h"

#include <QApplication>
#include <QMenuBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>

#include <memory>

namespace tally::test {

/// A worker in the place of the download: says one text and ends with `success`.
class QuickRefresh : public QObject {
    Q_OBJECT

public:
    explicit QuickRefresh(bool success) : success_(success) {}

Q_SIGNALS:
    void statusMessage(QString msg);
    void masterRefreshDone(bool success);

public Q_SLOTS:
    void run()
    {
        Q_EMIT statusMessage(QStringLiteral("Downloading heroes..."));
        Q_EMIT masterRefreshDone(success_);
    }

private:
    bool success_;
};

/// A page that counts how often it was refreshed.
class CountingTab : public ui::ReportTab {
    Q_OBJECT

public:
    int refreshes = 0;
    void refresh() override { ++refreshes; }
};

/// A main window over a store and a mail folder of its own, which talks to no network and hurries.
class WindowFixture {
public:
    WindowFixture()
    {
        setup.splash_minimum = std::chrono::milliseconds(0);
        setup.poll_interval = std::chrono::milliseconds(1);
        setup.update_delay = std::chrono::hours(1);
        setup.refresh = [](ui::StartUpChain &chain) {
            chain.start_refresh(new QuickRefresh(true));
        };
        setup.hard_exit = [count = hard_exits_] {
            ++*count;
        };
        store.db.set_setting(QStringLiteral("mailcache_dir"), mails.path());
    }

    ui::MainWindow &open()
    {
        window_ = std::make_unique<ui::MainWindow>(around, nullptr, setup);
        return *window_;
    }
    ui::StartUpChain &open_chain() const { return window_->chain(); }
    ui::MainWindow *window() const { return window_.get(); }
    void destroy() { window_.reset(); }

    std::string setting(const QString &key) const
    {
        return store.db.setting_or(key, QStringLiteral("<none>")).toStdString();
    }
    int hard_exits() const { return *hard_exits_; }
    std::string message() const { return window_->statusBar()->currentMessage().toStdString(); }

    /// The action at a path like "View/Theme/Light", mnemonics left out; null if there is none.
    QAction *action(const QString &path) const
    {
        QList<QAction *> actions = window_->menuBar()->actions();
        QAction *found = nullptr;
        for (const QString &name : path.split(u'/')) {
            found = nullptr;
            for (QAction *candidate : actions) {
                if (candidate->text().remove(u'&') == name)
                    found = candidate;
            }
            if (!found)
                return nullptr;
            actions = found->menu() ? found->menu()->actions() : QList<QAction *>();
        }
        return found;
    }

    TempStore store;
    queries::StoreQueries queries{store.db};
    TempMails mails;
    Settings settings{store.db};
    platform::FakeHost host;
    ui::Surroundings around{.db = store.db,
                            .queries = queries,
                            .settings = settings,
                            .host = host,
                            .icon_dir = store.folder.filePath(QStringLiteral("icons")),
                            .raw_dir = store.folder.filePath(QStringLiteral("raw"))};
    ui::WindowSetup setup;

private:
    // The deadline's timer outlives the window, as it must.
    std::shared_ptr<int> hard_exits_ = std::make_shared<int>(0);
    std::unique_ptr<ui::MainWindow> window_;
};

/// The windows of a kind that can be seen.
template <typename Window>
QList<Window *> shown_windows()
{
    QList<Window *> shown;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *window = qobject_cast<Window *>(widget);
        if (window && window->isVisible())
            shown << window;
    }
    return shown;
}

/// Runs the event loop until the condition holds, for at most half a minute.
template <typename Condition>
bool wait_until(Condition condition)
{
    return QTest::qWaitFor(condition, 30'000);
}

} // namespace tally::test
