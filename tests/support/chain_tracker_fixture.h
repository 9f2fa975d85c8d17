#pragma once

#include "data/master/master_cache.h"
#include "support/report_page_fixture.h"
#include "support/window_fixture.h"
#include "ui/chains/chain_summary_box.h"
#include "ui/chains/chain_tracker_tab.h"
#include "ui/chains/round_overview_window.h"

#include <QComboBox>
#include <QDateEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QSemaphore>
#include <QTableView>
#include <QTimeEdit>
#include <QTimer>

namespace tally::test {

using namespace std::chrono_literals;

inline constexpr double midnight = 1'700'006'400.0; // 2023-11-15 00:00 UTC

/// The tab over a store of its own, on a day that stands still.
class ChainTracker : public ReportPage<ui::ChainTrackerTab> {
protected:
    ~ChainTracker() override { page_.reset(); }

    /// A chain of one minute with won and lost rounds; its file's name tells its number.
    void add_chain(double start, int won, int lost = 0, const QString &player = u"Ada"_s,
                   double player_id = 77.0, double hero_1 = 7.0)
    {
        std::vector<data::BattleRound> rounds;
        for (int i = 0; i < won; ++i)
            rounds.push_back(battle_round(1.0, {item(4.0, 1.0, 10.0)}));
        for (int i = 0; i < lost; ++i)
            rounds.push_back(battle_round(1.0));
        data::BattleReport report = battle(start, rounds);
        report.chain_end_time = start + 60.0;
        report.hero_id_1 = hero_1;
        report.hero_id_2 = 8.0;
        report.player_id = player_id;
        report.player_name = player;
        store_.db.insert_report(u"Persistent.Mail.%1"_s.arg(++chains_), report, start);
    }

    void build()
    {
        const ui::Surroundings around{.db = store_.db,
                                      .queries = impatient_ ? *impatient_ : queries_,
                                      .settings = settings_,
                                      .host = host_,
                                      .clock = clock_,
                                      .icon_dir = store_.folder.filePath(u"icons"_s)};
        page_ = std::make_unique<ui::ChainTrackerTab>(around, 1.0, nullptr, setup_);
        page_->resize(1'400, 900);
    }

    ui::ChainTrackerTab &open()
    {
        build();
        page_->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(page_.get()));
        return *page_;
    }

    std::string card(const QString &key) const
    {
        const auto *card = page_->findChild<QWidget *>(key);
        return card->findChildren<QLabel *>().constFirst()->text().toStdString();
    }

    std::string best(const QString &name) const
    {
        return page_->findChild<QLabel *>(name)->text().toStdString();
    }

    std::string period() const
    {
        QStringList parts;
        for (const QString &moment : {u"From"_s, u"To"_s})
            parts << named<QDateEdit>(moment + u" date (UTC)"_s).text()
                  << named<QTimeEdit>(moment + u" time (UTC)"_s).text();
        return parts.join(u' ').toStdString();
    }

    std::vector<std::string> pairs() const
    {
        const auto &list = named<QListWidget>(u"Hero pairs"_s);
        std::vector<std::string> texts;
        for (int row = 0; row < list.count(); ++row)
            texts.push_back(list.item(row)->text().toStdString());
        return texts;
    }

    QAbstractItemModel &loot() const { return *named<QTableView>(u"Loot"_s).model(); }
    std::string loot_text(int column) const
    {
        return loot().index(0, column).data().toString().trimmed().toStdString();
    }

    std::string summary_title() const
    {
        return page_->findChild<ui::ChainSummaryBox *>()->title().toStdString();
    }

    QComboBox &player_combo() const { return named<QComboBox>(u"Player"_s); }
    std::string player() const { return player_combo().currentText().toStdString(); }

    /// Closes the box that has come up. \return what it says
    static std::string close_box()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return "nothing came";
        box->close();
        return (box->windowTitle() + u": "_s + box->text()).toStdString();
    }

    std::unique_ptr<queries::StoreQueries> impatient_; ///< asked in the place of the others
    Settings settings_{store_.db};
    platform::FakeHost host_;
    platform::Clock clock_ = [] {
        return midnight + 22.0 * hour;
    };
    ui::ChainTrackerSetup setup_;

private:
    int chains_ = 0;
};

} // namespace tally::test
