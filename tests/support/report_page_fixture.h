#pragma once

#include "queries/store_queries.h"
#include "support/local_zone.h"
#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"
#include "ui/items/item_row_table.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <stdexcept>

namespace tally::test {

using namespace Qt::StringLiterals;

inline constexpr double hour = 3'600.0;
inline constexpr double noon = 1'740'830'400.0; // 2025-03-01 12:00 UTC, in Berlin 13:00

/// A page over a store of its own, on the user's clock in Berlin, on a day that stands still. The
/// page waits for its answers.
template <typename Page>
class ReportPage : public testing::Test {
protected:
    void open(std::unique_ptr<Page> page)
    {
        page_ = std::move(page);
        page_->resize(1'300, 800);
        page_->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(page_.get()));
    }

    /// A kill by players who each got one item of the kind (4, 1).
    void kill(const QString &file, double time, const QStringList &players,
              const QString &boss = u"Ironhand Baulur"_s)
    {
        std::vector<data::TrialParticipant> people;
        double id = 70.0;
        for (const QString &name : players) {
            people.push_back(participant(name, {item(4.0, 1.0, 10.0)}));
            people.back().player_id = ++id;
            people.back().damage_rate = 0.5;
        }
        data::TrialReport report = trial(people);
        report.boss_name = boss;
        report.event_time = time;
        store_.db.insert_trial_report(file, report, time);
    }

    void sql(const QString &text) const { PlainConnection(store_.path).rows(text); }

    template <typename Widget>
    Widget &named(const QString &accessible_name) const
    {
        for (Widget *widget : page_->template findChildren<Widget *>()) {
            if (widget->accessibleName() == accessible_name)
                return *widget;
        }
        throw std::runtime_error("no control is called " + accessible_name.toStdString());
    }

    ui::ItemRowTable &table(const QString &name) const { return named<ui::ItemRowTable>(name); }
    void press(const QString &button) const
    {
        QTest::mouseClick(&named<QPushButton>(button), Qt::LeftButton);
    }
    bool says(const QString &text) const
    {
        for (const QLabel *label : page_->template findChildren<QLabel *>()) {
            if (label->isVisible() && label->text() == text)
                return true;
        }
        return false;
    }

    /// The texts of a column.
    static std::vector<std::string> column(const QTableView &table, int column)
    {
        std::vector<std::string> texts;
        for (int row = 0; row < table.model()->rowCount(); ++row)
            texts.push_back(table.model()->index(row, column).data().toString().toStdString());
        return texts;
    }

    static void double_click(ui::ItemRowTable &table, int row)
    {
        const QPoint at = table.visualRect(table.model()->index(row, 0)).center();
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, at);
    }
    /// The dialog that a double click opens, as a person finds it.
    static QDialog &dialog()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            throw std::runtime_error("no dialog has opened");
        return *dialog;
    }
    static QStringList dialog_texts()
    {
        QStringList texts;
        for (const QLabel *label : dialog().template findChildren<QLabel *>())
            texts << label->text();
        return texts;
    }
    void close_dialog() const
    {
        dialog().reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        page_->activateWindow(); // as a window manager does
        EXPECT_TRUE(QTest::qWaitForWindowActive(page_.get()));
    }

    const LocalZone zone_{"Europe/Berlin"};
    TempStore store_;
    queries::StoreQueries queries_{store_.db, std::chrono::hours(1)};
    double now_ = noon;
    std::unique_ptr<Page> page_;
};

} // namespace tally::test
