#include "platform/updater/snooze.h"
#include "support/installation.h"
#include "support/print_qt.h"
#include "support/temp_store.h"
#include "support/update_site.h"
#include "ui/update/update_dialog.h"
#include "ui/update/update_texts.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::platform::Updater;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

/// A dialog over a server, a store and an installation of its own.
class Dialog : public testing::Test {
protected:
    Dialog()
    {
        setup_.endpoint = site_.endpoint();
        setup_.clock = [] {
            return 1.8e9;
        };
        setup_.updates_dir = installed_.updates_dir();
        setup_.tools = installed_.tools(script_);
        record_ = site_.offer(u"v3"_s, platform::read_file(installed_.zip()));
        QFile::remove(installed_.zip());
    }

    ui::UpdateDialog &open(bool forced = false)
    {
        dialog_ = std::make_unique<ui::UpdateDialog>(record_, &store_.db, installed_.program_path(),
                                                     forced, nullptr, setup_);
        dialog_->show();
        return *dialog_;
    }
    /// Labels and buttons that can be seen, those that are disabled in brackets.
    std::string sight() const
    {
        QStringList texts;
        for (QWidget *widget : dialog_->findChildren<QWidget *>()) {
            const QString text = widget->property("text").toString().section(u"<br>"_s, 0, 0);
            if (widget->isVisible() && !text.isEmpty())
                texts << (widget->isEnabled() ? text : u'[' + text + u']');
        }
        return texts.join(u'|').toStdString();
    }
    template <typename Condition>
    static bool wait(Condition condition)
    {
        return QTest::qWaitFor(condition, 30'000);
    }
    /// Waits for a box over the dialog and closes it. \return title and text
    std::string box() const
    {
        QPointer<QMessageBox> box;
        EXPECT_TRUE(wait([&] { return box = dialog_->findChild<QMessageBox *>(); }));
        const std::string text = (box->windowTitle() + u'|' + box->text()).toStdString();
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_TRUE(wait([&] { return !box; }));
        return text;
    }
    QStringList files() const { return QDir(setup_.updates_dir).entryList(QDir::Files); }

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
    for (const auto &[bytes, text] :
         {std::pair(1023LL, "1023 B"), {1024LL, "1.0 KB"}, {1048576LL, "1.0 MB"}})
        EXPECT_EQ(ui::size_text(bytes).toStdString(), text);
    for (const auto &[done, total, percent] : {std::tuple(2, 3, 66), {5, -1, 0}, {9, 3, 100}})
        EXPECT_EQ(ui::progress_percent(done, total), percent);
}

TEST(UpdateTexts, TheOfferSaysWhatTheRecordSaysAndTakesNoMarkup)
{
    QJsonObject record = {{u"version"_s, u"v3"_s}, {u"size"_s, -1}};
    const std::string least = "<b>Latest:</b> v3<br><b>You have:</b> v2";
    EXPECT_EQ(ui::offer_text(record, u"v2"_s, false).toStdString(), least);
    record[u"released"_s] = u"<img src=x>"_s;
    record[u"size"_s] = 1024;
    EXPECT_THAT(ui::offer_text(record, u"v2"_s, true).toStdString(),
                testing::StartsWith(least +
                                    "<br><b>Released:</b> &lt;img src=x&gt;<br><b>Size:</b> "
                                    "1.0 KB<br><span style=\"color: #f39c12;\">"));
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
    QTest::keyClick(&open(true), Qt::Key_Return);
    EXPECT_EQ(sight(),
              "Update required|<b>Latest:</b> v3|0%|Preparing download...|[Downloading...]");
    ASSERT_TRUE(wait([&] { return !dialog_->isVisible(); })) << box();
    EXPECT_TRUE(dialog_->install_started());
    EXPECT_EQ(snoozed_until(&store_.db), std::nullopt);
    EXPECT_FALSE(installed_.has_started()) << "it waits for the program";
    program.terminate();
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(installed_.started(), "new --post-update-check v3");
    EXPECT_EQ(installed_.start(), "new ");
    EXPECT_EQ(installed_.content(u"data/tally.db"_s), "years of play");
}

TEST_F(Dialog, AnOfferCanBePostponedOrClosed)
{
    EXPECT_EQ(open().size(), QSize(500, 260));
    EXPECT_EQ(sight(), "New version available|<b>Latest:</b> v3|Download && Install|Later (24h)");
    QTest::mouseClick(dialog_->findChildren<QPushButton *>().last(), Qt::LeftButton);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(snoozed_version(&store_.db), u"v3"_s);
    EXPECT_EQ(snoozed_until(&store_.db)->toSecsSinceEpoch(), 1'800'086'400);
    clear_snooze(&store_.db);
    QTest::keyClick(open().findChildren<QPushButton *>().last(), Qt::Key_Return);
    EXPECT_EQ(snoozed_version(&store_.db), u"v3"_s) << "not the default button";
    clear_snooze(&store_.db);
    QTest::keyClick(&open(), Qt::Key_Escape);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(snoozed_until(&store_.db), std::nullopt);
}

TEST_F(Dialog, ARequiredUpdateYieldsToNothingButTheEndOfTheProgram)
{
    ui::UpdateDialog &dialog = open(true);
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowCloseButtonHint);
    site_.break_with(u"silent"_s);
    QTest::mouseClick(dialog.findChild<QPushButton *>(), Qt::LeftButton);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(!dialog.close() && dialog.isVisible());
    dialog.request_end();
    EXPECT_TRUE(dialog.wait_until(QDeadlineTimer(30'000)));
    EXPECT_TRUE(dialog.close() && !dialog.install_started());
}

TEST_F(Dialog, AFailedDownloadIsToldAndCanBeTriedAgain)
{
    site_.break_with(u"garbled"_s);
    QTest::keyClick(&open(), Qt::Key_Return);
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THAT(box(),
                    HasSubstr("Download failed|Could not download update:\n\nSHA256 mismatch: "));
        EXPECT_EQ(sight(), "New version available|<b>Latest:</b> v3|Retry download|Later (24h)");
        EXPECT_EQ(files(), QStringList());
        if (attempt == 1)
            site_.mend();
        QTest::keyClick(dialog_->focusWidget(), Qt::Key_Space);
    }
    EXPECT_TRUE(wait([&] { return dialog_->install_started(); }));
    EXPECT_EQ(script_, setup_.updates_dir + u"/install_update.sh"_s);
}

TEST_F(Dialog, WhatCannotBeInstalledIsNotDownloaded)
{
    const QJsonObject good = record_;
    for (const auto &[key, value, reason] :
         {std::tuple(u"payload_sha256"_s, u"12 34"_s, "names a hash that is none: \"12 34\""),
          {u"version"_s, u"v1"_s, "v1 is not newer than v2"},
          {u"payload_url"_s, u""_s, "names no file"},
          {u"released"_s, u"a tool is missing"_s, "\n\nno tool\n\n"}}) {
        record_ = good;
        record_[key] = value;
        setup_.tools.lack = [](UpdateForm) {
            return u"no tool"_s;
        };
        QTest::keyClick(&open(true), Qt::Key_Return);
        EXPECT_THAT(box(), HasSubstr(reason));
        EXPECT_THAT(sight(), testing::EndsWith("|Retry download"));
    }
    EXPECT_EQ(site_.requests_of(u"/updates/payload.zip"_s), 0);
}

TEST_F(Dialog, AFailedInstallIsToldWithThePlaceOfTheFile)
{
    setup_.tools.start = [](const QString &) {
        return false;
    };
    QTest::keyClick(&open(true), Qt::Key_Return);
    EXPECT_EQ(box(),
              "Install failed|Could not install update:\n\nCannot spawn install bat\n\nThe "
              "downloaded file is at:\n" +
                  setup_.updates_dir.toStdString() +
                  "/payload-v3.zip\n\nYou can install it manually by replacing the app files.");
    EXPECT_TRUE(files().contains(u"payload-v3.zip"_s));
    EXPECT_EQ(sight(), "Update required|<b>Latest:</b> v3|Retry download") << "a way on";
}

TEST_F(Dialog, ClosedDuringADownloadItEndsThat)
{
    site_.break_with(u"endless"_s);
    for (const bool is_deleted_at_once : {false, true}) {
        QTest::keyClick(&open(), Qt::Key_Return);
        ASSERT_TRUE(wait([&] { return sight().find(" / ?") != std::string::npos; }));
        const QPointer<QThread> thread = dialog_->findChild<QThread *>();
        QTest::keyClick(dialog_.get(), Qt::Key_Escape);
        EXPECT_FALSE(dialog_->isVisible());
        if (is_deleted_at_once)
            dialog_.reset();
        else
            dialog_.release()->delete_when_ended();
        EXPECT_TRUE(wait([&] { return !thread; }));
        EXPECT_EQ(files(), QStringList());
    }
    EXPECT_EQ(script_, QString());
}
