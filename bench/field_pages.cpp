#include "field_pages.h"

#include "data/store/tally_db.h"
#include "page_bench.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "settings/settings.h"
#include "store_filler.h"
#include "ui/field/field_fights_tab.h"

#include <QApplication>
#include <QLineEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <cstdio>

namespace tally::bench {
namespace {

/// One more attack, as the watcher brings it.
void add_mail(data::TallyDb &db, const tools::FillOptions &options, int number)
{
    const QVariantMap attack{{QStringLiteral("attack_id"), 1.0},
                             {QStringLiteral("attack_seq"), 1},
                             {QStringLiteral("n_attacks"), 1},
                             {QStringLiteral("email_time"), options.end + number},
                             {QStringLiteral("email_id"), 1e9 + number},
                             {QStringLiteral("tour_id"), 1e9 + number},
                             {QStringLiteral("my_ct"), 1.0},
                             {QStringLiteral("player_id"), 5'000'000.0},
                             {QStringLiteral("player_name"), QStringLiteral("Player 1")},
                             {QStringLiteral("enemy_name"), QStringLiteral("Enemy 1")},
                             {QStringLiteral("my_hid"), 7.0},
                             {QStringLiteral("my_kill_score"), 900}};
    db.insert_field_report(QStringLiteral("Persistent.Mail.7%1").arg(number), {attack},
                           options.end);
}

void look_at_30_days(const QWidget &page, const tools::FillOptions &options)
{
    constexpr double days = 30 * 86400.0;
    const QDateTime from =
        QDateTime::fromSecsSinceEpoch(static_cast<qint64>(options.end - days), Qt::UTC);
    for (QLineEdit *edit : page.findChildren<QLineEdit *>()) {
        if (edit->accessibleName() == u"From date (UTC)")
            edit->setText(from.toString(QStringLiteral("yyyy-MM-dd")));
    }
}

QList<QTreeWidgetItem *> shown_attacks(QTreeWidget &tree)
{
    QList<QTreeWidgetItem *> attacks;
    for (QTreeWidgetItemIterator item(&tree); *item; ++item) {
        if ((*item)->data(0, Qt::UserRole).isValid())
            attacks << *item;
    }
    return attacks;
}

/// From the double click until the window is painted.
double opening_milliseconds(QTreeWidget &tree)
{
    QElapsedTimer timer;
    timer.start();
    Q_EMIT tree.itemDoubleClicked(shown_attacks(tree).constFirst(), 0);
    QWidget *window = nullptr;
    while (!(window = QApplication::activeModalWidget()))
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    const double opened = milliseconds(timer);
    window->close();
    QCoreApplication::sendPostedEvents(window, QEvent::DeferredDelete);
    return opened;
}

} // namespace

void bench_field_pages(const QString &folder)
{
    const QString path = folder + QStringLiteral("/field.db");
    tools::FillOptions options;
    options.rounds = 500'000; // 100,000 attacks
    tools::fill_store(path, options);
    data::TallyDb db(path);
    db.init_schema();
    Settings settings(db);
    queries::StoreQueries queries(db);
    platform::FakeHost host;
    ui::FieldFightsTab page({.db = db, .queries = queries, .settings = settings, .host = host}, 0);
    page.resize(1400, 900);
    page.show();
    refresh(page, [] {});
    look_at_30_days(page, options);
    refresh(page, [&page] { page.refresh(); });
    auto &tree = *page.findChild<QTreeWidget *>();
    std::printf("field fights: %lld attacks shown\n",
                static_cast<long long>(shown_attacks(tree).size()));
    int mails = 0;
    print_refresh_figures("field",
                          time_refreshes(
                              "field fights", page, [&] { add_mail(db, options, ++mails); },
                              [&page] { page.refresh(); }),
                          100);
    std::vector<double> opened;
    for (int i = 0; i < page_repeats; ++i)
        opened.push_back(opening_milliseconds(tree));
    print_figure("field_attack_opens_ms", median(opened), Goal::at_most, 50);
}

} // namespace tally::bench
