#include "report_shots.h"

#include "services/keep_cooldown_service.h"
#include "ui/alerts/barbarian_keep_overlay.h"
#include "ui/alerts/keep_toast.h"
#include "ui/items/item_row_table.h"
#include "ui/main_window.h"
#include "ui/report_tabs.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QLineEdit>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace {

using namespace tally;

/// Lets answers come in and all of it be laid out.
void settle()
{
    QEventLoop loop;
    QTimer::singleShot(300, &loop, &QEventLoop::quit);
    loop.exec();
}

QPixmap taken(QWidget *dialog)
{
    if (!dialog)
        return {};
    settle();
    const QPixmap picture = dialog->grab();
    dialog->close();
    return picture;
}

QPixmap behind_first_row(const ui::MainWindow &window, const QString &table_name)
{
    for (ui::ItemRowTable *table : window.findChildren<ui::ItemRowTable *>()) {
        if (table->accessibleName() != table_name || table->rows().empty())
            continue;
        Q_EMIT table->rowOpened(table->model()->index(0, 0));
        settle();
        return taken(QApplication::activeModalWidget());
    }
    return {};
}

/// The window of the first attack on a page of field fights.
QPixmap first_attack(ui::MainWindow &window, int page)
{
    window.tabs().setCurrentIndex(page);
    settle();
    auto *tree = window.tabs().currentWidget()->findChild<QTreeWidget *>();
    for (QTreeWidgetItemIterator item(tree, QTreeWidgetItemIterator::NoChildren); *item; ++item) {
        Q_EMIT tree->itemDoubleClicked(*item, 0);
        settle();
        return taken(QApplication::activeModalWidget());
    }
    return {};
}

QPixmap settings_dialog(const ui::MainWindow &window)
{
    for (QAction *action : window.findChildren<QAction *>()) {
        if (action->text() == u"&Settings...")
            action->trigger();
    }
    QWidget *dialog = QApplication::activeModalWidget();
    if (auto *folder = dialog ? dialog->findChild<QLineEdit *>() : nullptr)
        folder->setText(QStringLiteral("/no/such/folder"));
    return taken(dialog);
}

} // namespace

std::vector<std::pair<QString, QPixmap>> report_shots(ui::MainWindow &window)
{
    std::vector<std::pair<QString, QPixmap>> shots;
    const std::pair<const char *, const char *> tables[] = {
        {"kills", "Players"}, {"fort", "Fort reports"}, {"keep-kill", "Keep kills"}};
    int page = 0;
    for (const auto &[name, table] : tables) {
        window.tabs().setCurrentIndex(++page);
        settle();
        shots.emplace_back(QLatin1StringView(name),
                           behind_first_row(window, QLatin1StringView(table)));
    }
    constexpr int favorites = 7;
    shots.emplace_back(QStringLiteral("attack"), first_attack(window, ++page));
    shots.emplace_back(QStringLiteral("attack-favorite"), first_attack(window, favorites));
    shots.emplace_back(QStringLiteral("settings"), settings_dialog(window));
    auto *toast = new ui::KeepToast(QStringLiteral("🏰 Barbarian Keep"),
                                    QStringLiteral("Keep ready in ~3 hours — click to dismiss"));
    toast->show_toast();
    shots.emplace_back(QStringLiteral("toast"), taken(toast));
    auto *banner = new ui::BarbarianKeepOverlay;
    banner->show_centered();
    shots.emplace_back(QStringLiteral("banner"), taken(banner));
    return shots;
}
