#include "support/log_capture.h"
#include "support/plain_connection.h"
#include "support/small_mails.h"
#include "support/window_fixture.h"
#include "ui/import_progress.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

class Imports : public testing::Test {
protected:
    void SetUp() override
    {
        window_ = &fixture_.open();
        tab_ = new CountingTab;
        window_->tabs().add(tab_, u"counts"_s);
    }

    QUrl add(const QString &name, const QByteArray &content = fort_mail())
    {
        return QUrl::fromLocalFile(fixture_.mails.add(name, content));
    }

    bool drag_enters(const QList<QUrl> &urls)
    {
        QMimeData mime;
        mime.setUrls(urls);
        QDragEnterEvent event({5, 5}, Qt::CopyAction, &mime, Qt::LeftButton, {});
        event.ignore();
        QCoreApplication::sendEvent(window_, &event);
        return event.isAccepted();
    }

    void drop(const QList<QUrl> &urls)
    {
        EXPECT_TRUE(drag_enters(urls));
        QMimeData mime;
        mime.setUrls(urls);
        QDropEvent event({5, 5}, Qt::CopyAction, &mime, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window_, &event);
        QCoreApplication::processEvents();
    }

    /// Chooses "Reimport mailcache..." and the folder in its dialog.
    void reimport(const QString &folder)
    {
        QTimer::singleShot(0, [folder] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            ASSERT_TRUE(dialog);
            EXPECT_EQ(dialog->windowTitle(), u"Select mailcache directory");
            dialog->setDirectory(folder);
            dialog->selectFile(folder);
            static_cast<QDialog *>(dialog)->done(folder.isEmpty() ? QDialog::Rejected
                                                                  : QDialog::Accepted);
        });
        fixture_.action(u"File/Reimport mailcache..."_s)->trigger();
    }

    WindowFixture fixture_;
    ui::MainWindow *window_ = nullptr;
    CountingTab *tab_ = nullptr;
};

const QString mail = u"Persistent.Mail.%1"_s;

} // namespace

TEST_F(Imports, ADragIsTakenForOneMailAmongItsFiles)
{
    const QUrl good = QUrl::fromLocalFile(u"/any/Persistent.Mail.1"_s);
    const QUrl lower_case = QUrl::fromLocalFile(u"/any/persistent.mail.1"_s);
    const QUrl remote(u"https://any.example/Persistent.Mail.1"_s);
    EXPECT_TRUE(drag_enters({lower_case, remote, good}));
    EXPECT_FALSE(drag_enters({lower_case}));
    EXPECT_FALSE(drag_enters({remote}));
    EXPECT_FALSE(drag_enters({}));
}

TEST_F(Imports, ADropCountsWhatCameInAndWhatIsNoMail)
{
    drop({add(mail.arg(1)), add(u"persistent.mail.2"_s), add(mail.arg(3))});
    EXPECT_EQ(fixture_.message(), "Drop import: 2 file(s) imported, 1 skipped.");
    EXPECT_EQ(tab_->refreshes, 1);
    EXPECT_TRUE(QFile::exists(QDir(fixture_.around.raw_dir).filePath(mail.arg(1))));
    drop({add(mail.arg(1)), add(mail.arg(4), "of no interest")});
    EXPECT_EQ(fixture_.message(), "Drop import: 0 file(s) imported, 0 skipped.");
    EXPECT_EQ(tab_->refreshes, 1);
}

TEST_F(Imports, ADroppedNameThatIsNoUtf8StaysWhatItIs)
{
    const QByteArray name = "Persistent.Mail.\xff";
    const QByteArray path = QFile::encodeName(fixture_.mails.path()) + '/' + name;
    const QUrl plain = add(mail.arg(1));
    ASSERT_EQ(std::rename(plain.toLocalFile().toLocal8Bit().constData(), path.constData()), 0);
    drop({QUrl::fromEncoded("file://" + path.toPercentEncoding("/"))});
    EXPECT_EQ(fixture_.message(), "Drop import: 1 file(s) imported, 0 skipped.");
}

TEST_F(Imports, AFailingFileDoesNotStopTheOthersOfADrop)
{
    const QList<QUrl> urls = {add(mail.arg(1)), add(u"other"_s)};
    PlainConnection(fixture_.store.path).rows(u"DROP TABLE trial_reports"_s);
    const LogCapture log;
    drop(urls);
    EXPECT_EQ(LogCapture::lines(u"drop import failed:"_s).size(), 1);
    EXPECT_THAT(fixture_.message(),
                testing::MatchesRegex("Drop import: 0 file\\(s\\) imported, 1 skipped\\. 1 mail "
                                      "could not be stored \\(.*\\); drop it again\\."));
}

TEST_F(Imports, ALargeDropLeavesTheWindowAliveAndCanBeCancelled)
{
    QList<QUrl> urls;
    while (urls.size() < 500)
        urls << add(mail.arg(urls.size()));
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        EXPECT_FALSE(drag_enters(urls)) << "one import at a time";
        for (auto *dialog : window_->findChildren<QProgressDialog *>())
            dialog->findChild<QPushButton *>()->click();
    });
    watch.start(1);
    drop(urls);
    EXPECT_THAT(fixture_.message(), testing::MatchesRegex("Drop import: [0-9]+ file.*"));
    EXPECT_LT(QDir(fixture_.around.raw_dir).count(), 400U);
}

TEST_F(Imports, AStoreThatTakesNoMailIsToldBehindTheCounters)
{
    add(mail.arg(1));
    add(mail.arg(2));
    PlainConnection(fixture_.store.path)
        .rows(u"CREATE TRIGGER full BEFORE INSERT ON fort_loot BEGIN SELECT RAISE(ABORT, 'no "
              "room'); END"_s);
    reimport(fixture_.mails.path());
    EXPECT_THAT(fixture_.message(),
                testing::StartsWith("Import done: scanned=2  imported=0  errors=0. 2 mails "
                                    "could not be stored (no room"));
}

TEST_F(Imports, AReimportStoresTheFolderImportsAndRefreshes)
{
    const TempMails other;
    for (int i = 0; i < 3; ++i)
        other.add(mail.arg(i), fort_mail());
    reimport(other.path());
    EXPECT_EQ(fixture_.message(), "Import done: scanned=3  imported=3  errors=0");
    EXPECT_EQ(fixture_.setting(u"mailcache_dir"_s), other.path().toStdString());
    EXPECT_EQ(tab_->refreshes, 1);
}

TEST_F(Imports, ARejectedFolderChangesNothing)
{
    reimport({});
    EXPECT_EQ(fixture_.message(), "Ready.");
    EXPECT_EQ(fixture_.setting(u"mailcache_dir"_s), fixture_.mails.path().toStdString());
    EXPECT_EQ(tab_->refreshes, 0);
}

TEST_F(Imports, AReimportCanBeCancelledWhileItRuns)
{
    for (int i = 0; i < 500; ++i)
        add(mail.arg(i), "of no interest");
    QString label;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        for (auto *dialog : window_->findChildren<QProgressDialog *>()) {
            if (dialog->labelText() == u"Importing mailcache...")
                continue;
            label = dialog->labelText();
            EXPECT_EQ(dialog->maximum(), 500);
            dialog->findChild<QPushButton *>()->click();
        }
    });
    watch.start(1);
    reimport(fixture_.mails.path());
    EXPECT_EQ(label, u"Importing 200/500  (0 new)");
    EXPECT_EQ(fixture_.message(), "Import done: scanned=200  imported=0  errors=0");
}

TEST_F(Imports, AnExitEndsARunningReimport)
{
    for (int i = 0; i < 500; ++i)
        add(mail.arg(i), "of no interest");
    bool asked = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (window_->findChildren<QProgressDialog *>().isEmpty() || std::exchange(asked, true))
            return;
        window_->request_exit();
    });
    watch.start(1);
    reimport(fixture_.mails.path());
    EXPECT_TRUE(asked);
    EXPECT_EQ(fixture_.message(), "Import done: scanned=200  imported=0  errors=0");
    EXPECT_FALSE(window_->isVisible());
}

TEST(ImportProgress, ItStandsUntilItIsClosedHoweverOftenTheEndIsReported)
{
    ui::ImportProgress dialog(nullptr);
    dialog.show();
    EXPECT_NE(dialog.windowTitle(), QString());
    for (int report = 0; report < 2; ++report) {
        dialog.show_progress(200, 200, 0);
        EXPECT_TRUE(dialog.isVisible());
    }
}
