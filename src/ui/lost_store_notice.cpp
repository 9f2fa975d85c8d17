#include "ui/lost_store_notice.h"

#include "data/store/tally_db.h"
#include "ui/parts/quiet_modal.h"
#include "ui/parts/ui_log.h"

#include <QDir>
#include <QFileInfo>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

namespace tally::ui {

LostStoreNotice::LostStoreNotice(const data::TallyDb &db, QMainWindow *window,
                                 std::chrono::milliseconds interval)
    : QObject(window), db_(db), window_(window)
{
    connect(&timer_, &QTimer::timeout, this, &LostStoreNotice::look);
    timer_.start(interval);
}

void LostStoreNotice::look()
{
    // A single look may fail for a moment, on a disk of another machine.
    constexpr int sure = 2;
    misses_ = db_.is_in_place() ? 0 : misses_ + 1;
    if (misses_ < sure)
        return;
    timer_.stop();
    qCCritical(log_ui).noquote() << "the store was removed or replaced:" << db_.path();
    auto *again = new QPushButton(QStringLiteral("Store lost: restart..."), window_);
    again->setObjectName(QStringLiteral("lostStoreButton"));
    connect(again, &QPushButton::clicked, this, &LostStoreNotice::tell);
    window_->statusBar()->addPermanentWidget(again);
    tell();
}

void LostStoreNotice::tell()
{
    if (box_)
        return;
    const QFileInfo store(db_.path());
    const bool is_replaced = store.exists();
    box_ = new QMessageBox(
        QMessageBox::Warning, QStringLiteral("Store lost"),
        QStringLiteral("\"%1\" was %2 while the program ran. You still see what it held, but "
                       "nothing that comes in from now on is kept.")
            .arg(QDir::toNativeSeparators(store.absoluteFilePath()),
                 is_replaced ? QStringLiteral("replaced") : QStringLiteral("removed")),
        QMessageBox::NoButton, window_);
    box_->setInformativeText(
        is_replaced ? QStringLiteral("Restart the program with the store that is there now?")
                    : QStringLiteral("Restart the program with a new store? It keeps your settings "
                                     "and imports all mails of the mail folder again."));
    box_->setTextFormat(Qt::PlainText);
    box_->setAttribute(Qt::WA_DeleteOnClose);
    auto *restart = box_->addButton(QStringLiteral("Restart"), QMessageBox::AcceptRole);
    box_->addButton(QStringLiteral("Not now"), QMessageBox::RejectRole);
    box_->setDefaultButton(restart);
    connect(restart, &QPushButton::clicked, this, &LostStoreNotice::restartWanted);
    open_quietly(*box_);
}

} // namespace tally::ui
