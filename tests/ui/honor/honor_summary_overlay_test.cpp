#include "data/store/tally_db.h"
#include "honor/honor_summary_service.h"
#include "honor/scripted_reader.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "support/report_builders.h"
#include "support/temp_store.h"
#include "ui/honor/discrepancy_chart.h"
#include "ui/honor/honor_discrepancy_history_dialog.h"
#include "ui/honor/honor_summary_overlay.h"
#include "ui/parts/table_export.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

#include <gmock/gmock.h>

namespace tally::honor {
namespace {

using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;

constexpr int bound_ms = 30'000;
const QString strange_name = u"<img src=x>"_s;

class HonorOverlay : public testing::Test {
protected:
    HonorOverlay()
    {
        auto report = battle(1.0, {battle_round(1.0)});
        report.player_name = strange_name;
        store_.db.insert_report(u"first"_s, report, 1.0);
        store_.db.insert_field_report(u"field"_s, field_fight({u"Grim"_s, u"Vole"_s}), 1.0);
    }

    void open(ReaderState state, std::optional<ReadResult> read)
    {
        reader_->gives(state, std::move(read));
        overlay_ = std::make_unique<HonorSummaryOverlay>(around_, &service_);
        EXPECT_EQ(texts().count(u"need sync"_s), 3);
        overlay_->show();
        wait_until_read();
    }
    void read(ReaderState state, std::optional<ReadResult> read)
    {
        reader_->gives(state, std::move(read));
        button(u"Sync"_s)->click();
        wait_until_read();
    }
    void wait_until_read()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return reader_->begun.tryAcquire(); }, bound_ms));
        ASSERT_TRUE(QTest::qWaitFor([this] { return !service_.snapshot().running; }, bound_ms));
    }

    QStringList texts() const
    {
        QStringList texts;
        for (const QLabel *label : overlay_->findChildren<QLabel *>())
            texts << label->text();
        return texts;
    }
    QLabel *label(const QString &look) const { return overlay_->findChild<QLabel *>(look); }
    QPushButton *button(const QString &text) const
    {
        for (QPushButton *button : overlay_->findChildren<QPushButton *>()) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }

    TempStore store_;
    queries::StoreQueries queries_{store_.db};
    Settings settings_{store_.db};
    platform::FakeHost host_;
    ui::Surroundings around_{
        .db = store_.db, .queries = queries_, .settings = settings_, .host = host_, .clock = [] {
            return 1'060.0;
        }};
    std::shared_ptr<ScriptedReader> reader_ = std::make_shared<ScriptedReader>();
    HonorSummaryService service_{store_.db, queries_, reader_, around_.clock};
    std::unique_ptr<HonorSummaryOverlay> overlay_;
};

TEST_F(HonorOverlay, AWarningStandsUntilAReadingSucceeds)
{
    open(ReaderState::NeedsAdmin, {});
    const QLabel *big = label(u"big"_s);
    EXPECT_EQ(big->text(), u"!");
    EXPECT_THAT(texts(), Contains(u"Run program as administrator"_s));
    EXPECT_NE(big->styleSheet(), u"");
    read(ReaderState::GameNotFound, {});
    EXPECT_EQ(big->text(), u"---");
    EXPECT_THAT(texts(), Contains(u"Game not running"_s).Times(2)); // as status, too
    EXPECT_NE(big->styleSheet(), u"");
    read(ReaderState::Ok, read_of(500'000, 1'000.0));
    EXPECT_EQ(big->text(), u"500 000");
    EXPECT_EQ(big->styleSheet(), u"");
    EXPECT_THAT(texts(), testing::IsSupersetOf({strange_name, u"+0"_s, u"#2"_s, u"Bo"_s,
                                                u"+100 000"_s, u"Read OK (1.3s) FRESH!"_s}));
    for (const QLabel *one : overlay_->findChildren<QLabel *>())
        EXPECT_EQ(one->textFormat(), Qt::PlainText) << one->text().toStdString();
}

TEST_F(HonorOverlay, ItsLabelsChangeTheirLookWithWhatTheyShow)
{
    open(ReaderState::Ok, read_of(500'000, 1'000.0));
    EXPECT_EQ(label(u"delta_pos"_s), nullptr);
    store_.db.insert_report(u"since"_s, battle(1.0, {battle_round(1.0, {item(1.0, 2.0, 3.0)})}),
                            1'001.0);
    read(ReaderState::Ok, read_of(500'000, 1'060.0));
    ASSERT_NE(label(u"delta_pos"_s), nullptr);
    EXPECT_EQ(label(u"delta_pos"_s)->text(), u"+10");
    EXPECT_EQ(label(u"big"_s)->text(), u"500 010");
    EXPECT_EQ(label(u"delta_pos"_s)->palette().color(QPalette::WindowText), QColor(0x7bc47f));
}

TEST_F(HonorOverlay, IsAsLargeAsItsTextsNeed)
{
    open(ReaderState::Ok, read_of(500'000, 1'000.0));
    EXPECT_EQ(overlay_->width(), 280);
    const QSize usual = overlay_->size();
    Q_EMIT service_.stateChanged(QString(20, u'x') + QString(u" and more"_s).repeated(20));
    EXPECT_GT(overlay_->height(), usual.height());
    Q_EMIT service_.stateChanged(u"Read OK (1.3s)"_s);
    settings_.set(settings::honor_tracker_font_size, 26);
    for (const QLabel *one : overlay_->findChildren<QLabel *>()) {
        if (one->sizePolicy().horizontalPolicy() != QSizePolicy::Ignored) {
            EXPECT_GE(one->width(), one->fontMetrics().horizontalAdvance(one->text()))
                << one->text().toStdString();
        }
    }
    settings_.set(settings::honor_tracker_font_size, 10);
    EXPECT_EQ(overlay_->size(), usual);
    overlay_->set_font_size(13);
    EXPECT_EQ(settings_.get(settings::honor_tracker_font_size), 10);
}

TEST_F(HonorOverlay, ClosingItDuringAReadEndsTheReadAndIsRemembered)
{
    open(ReaderState::Ok, {});
    reader_->script.emplace_back(ReaderState::Ok, read_until_stopped);
    button(u"Sync"_s)->click();
    ASSERT_TRUE(QTest::qWaitFor([this] { return reader_->begun.tryAcquire(); }, bound_ms));
    const QSignalSpy closed(overlay_.get(), &HonorSummaryOverlay::overlayClosed);
    button(u"×"_s)->click();
    EXPECT_EQ(closed.count(), 1);
    EXPECT_FALSE(reader_->reading);
    EXPECT_FALSE(service_.cycling());
    EXPECT_FALSE(settings_.get(settings::honor_tracker_visible));

    reader_->gives(ReaderState::Ok, read_of(500'000, 1'000.0));
    overlay_ = std::make_unique<HonorSummaryOverlay>(around_, &service_);
    wait_until_read();
    overlay_ = std::make_unique<HonorSummaryOverlay>(around_, &service_);
    EXPECT_EQ(label(u"big"_s)->text(), u"500 000") << "what is known since the last time";
    settings_.set(settings::honor_tracker_visible, true);
    overlay_->set_persist_visibility_on_close(false);
    overlay_->close();
    EXPECT_TRUE(settings_.get(settings::honor_tracker_visible));
}

TEST_F(HonorOverlay, ADragIsStoredAlsoWhilePinned)
{
    settings_.set(settings::honor_tracker_pinned, true);
    host_.windows = {{7, u"Rise of Kingdoms", 9, {100, 50, 1'280, 720, true}}};
    open(ReaderState::Ok, {});
    const QPoint start(120, 130);
    ASSERT_TRUE(QTest::qWaitFor([&] { return overlay_->pos() == start; }, bound_ms));
    QTest::mousePress(overlay_.get(), Qt::LeftButton, {}, {5, 60});
    QTest::mouseMove(overlay_.get(), {25, 70});
    QTest::mouseRelease(overlay_.get(), Qt::LeftButton, {}, {5, 60});
    EXPECT_EQ(overlay_->pos(), start + QPoint(20, 10));
    EXPECT_EQ(settings_.get(settings::honor_tracker_x), overlay_->x());
    EXPECT_EQ(settings_.get(settings::honor_tracker_pin_off_x), overlay_->x() - 100);
}

TEST_F(HonorOverlay, TheHistoryShowsTheNewestReadingFirstAndExportsNumbers)
{
    store_.db.log_honor_summary(1.0, 500'000, 2.0, 500'100, 120, 500'120, -20);
    store_.now += 60;
    store_.db.log_honor_summary(2.0, 500'100, 3.0, 501'300, 1'180, 501'280, 20);
    HonorDiscrepancyHistoryDialog dialog(around_);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    const auto *table = dialog.findChild<QTableWidget *>();
    ASSERT_TRUE(QTest::qWaitFor([table] { return table->rowCount() == 2; }, bound_ms));
    EXPECT_EQ(dialog.windowTitle(), u"Honor Tracker - History");
    EXPECT_EQ(table->item(0, 5)->text(), u"+20");
    EXPECT_EQ(table->item(0, 3)->text(), u"+1 180");
    EXPECT_TRUE(ui::csv_of(*table->model()).endsWith(",500000,500100,120,500120,-20\r\n"));
    EXPECT_EQ(dialog.findChild<DiscrepancyChart *>()->accessibleDescription(),
              u"2 readings, last +20, sum 0");
}

} // namespace
} // namespace tally::honor
