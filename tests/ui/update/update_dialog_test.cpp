#include "platform/updater/snooze.h"
#include "support/installation.h"
#include "support/print_qt.h"
#include "support/temp_store.h"
#include "support/update_site.h"
#include "ui/update/update_dialog.h"
#include "ui/update/update_texts.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QThread>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::platform;
using namespace tally::platform::Updater;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const QString newer = u"v3"_s;

/// A dialog over a server, a store and an installation of its own.
class Dialog : public testing::Test {
protected:
    Dialog()
    {
        setup_.endpoint = site_.endpoint();
        setup_.clock = [] {
            return 1.8e9;
        };
        setup_.updates_dir = installed_.file(u"data/updates"_s);
        setup_.tools = installed_.tools(script_);
        record_ = site_.offer(newer, read_file(installed_.make_payload()));
    }

    ui::UpdateDialog &open(bool forced = false)
    {
        dialog_ = std::make_unique<ui::UpdateDialog>(record_, &store_.db, installed_.program_path(),
                                                     forced, nullptr, setup_);
        dialog_->show();
        return *dialog_;
    }

    /// The button that can be seen and begins so; null if there is none.
    QPushButton *button(const QString &text) const
    {
        for (QPushButton *each : dialog_->findChildren<QPushButton *>()) {
            if (each->isVisible() && each->text().startsWith(text))
                return each;
        }
        return nullptr;
    }
    bool shows(const QString &text) const
    {
        const auto labels = dialog_->findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
            return label->isVisible() && label->text().contains(text);
        });
    }
    /// Waits for a box over the dialog and closes it. \return title and text
    static std::string box()
    {
        QMessageBox *box = nullptr;
        const auto is_up = [&] {
            return (box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) !=
                   nullptr;
        };
        if (!QTest::qWaitFor(is_up, 30'000))
            return "no box";
        const std::string text = (box->windowTitle() + u'|' + box->text()).toStdString();
        QTest::keyClick(box, Qt::Key_Return);
        return text;
    }
    QByteArray downloaded() const { return read_file(setup_.updates_dir + u"/payload-v3.zip"_s); }

    UpdateSite site_;
    TempStore store_;
    Installation installed_;
    ui::UpdateSetup setup_;
    QJsonObject record_;
    QString script_;
    std::unique_ptr<ui::UpdateDialog> dialog_;
};

} // namespace

TEST(UpdateTexts, SizesAndProgress)
{
    for (const auto &[bytes, text] : {std::pair(0LL, "0 B"),
                                      {1023LL, "1023 B"},
                                      {1024LL, "1.0 KB"},
                                      {1048575LL, "1024.0 KB"},
                                      {1048576LL, "1.0 MB"},
                                      {209715200LL, "200.0 MB"}})
        EXPECT_EQ(ui::size_text(bytes).toStdString(), text);
    EXPECT_EQ(ui::progress_text(512, 2048), u"512 B / 2.0 KB"_s);
    EXPECT_EQ(ui::progress_text(512, -1), u"512 B / ?"_s);
    for (const auto &[done, total, percent] : {std::tuple(1LL, 3LL, 33),
                                               {3LL, 3LL, 100},
                                               {5LL, 0LL, 0},
                                               {5LL, -1LL, 0},
                                               {9LL, 3LL, 100}})
        EXPECT_EQ(ui::progress_percent(done, total), percent);
}

TEST(UpdateTexts, TheOfferSaysWhatTheRecordSaysAndTakesNoMarkup)
{
    QJsonObject record = {{u"version"_s, newer}, {u"size"_s, 0}, {u"released"_s, u""_s}};
    const std::string least = "<b>Latest:</b> v3<br><b>You have:</b> v2";
    EXPECT_EQ(ui::offer_text(record, u"v2"_s, false).toStdString(), least);
    record[u"size"_s] = -1;
    record[u"released"_s] = u"<img src=x>"_s;
    EXPECT_EQ(ui::offer_text(record, u"v2"_s, false).toStdString(),
              least + "<br><b>Released:</b> &lt;img src=x&gt;");
    record[u"released"_s] = QJsonValue();
    record[u"size"_s] = 1024;
    EXPECT_EQ(ui::offer_text(record, u"v2"_s, true).toStdString(),
              least +
                  "<br><b>Size:</b> 1.0 KB<br><span style=\"color: #f39c12;\"><b>You postponed "
                  "this update 24h ago.</b> Please install now to continue using the app.</span>");
}

TEST_F(Dialog, AnOldVersionUpdatesItselfToANewOne)
{
    // The whole road, as a user goes it by keyboard, with the script that runs here.
    QProcess program;
    program.start(u"sleep"_s, {u"1000"_s});
    ASSERT_TRUE(program.waitForStarted());
    setup_.tools.process_id = program.processId();
    setup_.tools.start = system_tools().start;
    store_.db.set_setting(u"update_snoozed_until"_s, u"2020-01-01T00:00:00Z"_s);
    ui::UpdateDialog &dialog = open(true);
    QSignalSpy finished(&dialog, &QDialog::finished);
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_FALSE(button(u"Downloading..."_s)->isEnabled());
    EXPECT_TRUE(shows(u"Preparing download..."_s));
    ASSERT_TRUE(finished.wait(30'000)) << box();
    EXPECT_TRUE(dialog.install_started());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(store_.db.setting_or(u"update_snoozed_until"_s, u"none"_s), u""_s);
    EXPECT_FALSE(QFile::exists(installed_.started_file())) << "it waits for the program";
    program.terminate();
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(installed_.started(), "new --post-update-check v3");
    EXPECT_EQ(installed_.start(), "new ");
    EXPECT_TRUE(installed_.data_is_untouched());
}

TEST_F(Dialog, AnOfferCanBePostponedOrClosed)
{
    ui::UpdateDialog &dialog = open();
    EXPECT_EQ(dialog.size(), QSize(500, 260));
    EXPECT_EQ(dialog.windowTitle(), u"Update available"_s);
    EXPECT_TRUE(shows(u"New version available"_s));
    EXPECT_EQ(button(u"Download"_s)->text(), u"Download && Install"_s);
    QTest::mouseClick(button(u"Later (24h)"_s), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(snoozed_version(&store_.db), newer);
    EXPECT_EQ(snoozed_until(&store_.db)->toSecsSinceEpoch(), 1'800'086'400);
    clear_snooze(&store_.db);
    QTest::keyClick(&open(), Qt::Key_Escape);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(snoozed_until(&store_.db), std::nullopt);
}

TEST_F(Dialog, ARequiredUpdateYieldsToNothingButTheEndOfTheProgram)
{
    ui::UpdateDialog &dialog = open(true);
    EXPECT_TRUE(shows(u"Update required"_s));
    EXPECT_EQ(button(u"Later"_s), nullptr);
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowCloseButtonHint);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.close());
    EXPECT_TRUE(dialog.isVisible());
    site_.break_with(u"silent"_s);
    QTest::mouseClick(button(u"Download"_s), Qt::LeftButton);
    EXPECT_FALSE(dialog.close());
    dialog.request_end();
    EXPECT_TRUE(dialog.wait_until(QDeadlineTimer(30'000)));
    EXPECT_TRUE(dialog.close());
    EXPECT_FALSE(dialog.install_started());
}

TEST_F(Dialog, AFailedDownloadIsToldAndCanBeTriedAgain)
{
    site_.break_with(u"garbled"_s);
    const QString hash = record_[u"payload_sha256"_s].toString();
    QTest::keyClick(&open(), Qt::Key_Return);
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THAT(box(),
                    StartsWith("Download failed|Could not download update:\n\nSHA256 mismatch: "
                               "expected " +
                               hash.left(16).toStdString() + "..., got "));
        EXPECT_FALSE(dialog_->findChild<QProgressBar *>()->isVisible());
        EXPECT_TRUE(button(u"Later"_s));
        EXPECT_EQ(downloaded(), QByteArray());
        ASSERT_EQ(dialog_->focusWidget(), button(u"Retry download"_s));
        if (attempt == 1)
            site_.mend();
        QTest::keyClick(button(u"Retry"_s), Qt::Key_Space);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog_->install_started(); }, 30'000));
    EXPECT_EQ(script_, setup_.updates_dir + u"/install_update.sh"_s);
}

TEST_F(Dialog, WhatCannotBeInstalledIsNotDownloaded)
{
    const auto is_refused = [&](const std::string &reason) {
        QTest::mouseClick((open(true), button(u"Download"_s)), Qt::LeftButton);
        EXPECT_THAT(box(), HasSubstr(reason));
        EXPECT_EQ(button(u"Later"_s), nullptr);
        EXPECT_TRUE(button(u"Retry download"_s));
        EXPECT_EQ(site_.requests_of(u"/updates/payload.zip"_s), 0);
    };
    const QJsonObject good = record_;
    record_[u"payload_sha256"_s] = u"12 34"_s;
    is_refused("names a hash that is none: \"12 34\"");
    record_ = good;
    record_[u"version"_s] = u"v1"_s;
    is_refused("v1 is not newer than v2");
    record_ = {{u"version"_s, newer}};
    is_refused("names no file");
    record_ = good;
    setup_.tools.lack = [](UpdateForm) {
        return u"no tool"_s;
    };
    is_refused("\n\nno tool\n\n");
}

TEST_F(Dialog, AFailedInstallIsToldWithThePlaceOfTheFile)
{
    setup_.tools.start = [](const QString &) {
        return false;
    };
    QTest::keyClick(&open(true), Qt::Key_Return);
    const std::string place = (setup_.updates_dir + u"/payload-v3.zip"_s).toStdString();
    EXPECT_EQ(box(), "Install failed|Could not install update:\n\nCannot spawn install bat\n\nThe "
                     "downloaded file is at:\n" +
                         place + "\n\nYou can install it manually by replacing the app files.");
    EXPECT_NE(downloaded(), QByteArray());
    EXPECT_TRUE(dialog_->isVisible());
    EXPECT_TRUE(button(u"Retry download"_s)) << "nobody is left without a way on";
}

TEST_F(Dialog, ClosedDuringADownloadItEndsThat)
{
    site_.break_with(u"endless"_s);
    record_.remove(u"size"_s);
    ui::UpdateDialog &dialog = open();
    QTest::keyClick(&dialog, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shows(u" / ?"_s); }, 30'000));
    const QPointer<QThread> thread = dialog.findChild<QThread *>();
    ASSERT_TRUE(thread->isRunning());
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    const QPointer<ui::UpdateDialog> gone(dialog_.release());
    gone->delete_when_ended();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !gone && !thread; }, 30'000));
    EXPECT_EQ(QDir(setup_.updates_dir).entryList({u"*.tmp"_s, u"payload-v3*"_s}), QStringList());
    EXPECT_EQ(script_, QString());
    // One that is deleted at once waits.
    QTest::keyClick(&open(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shows(u" / ?"_s); }, 30'000));
    dialog_.reset();
    EXPECT_EQ(QDir(setup_.updates_dir).entryList({u"*.tmp"_s}), QStringList());
}
