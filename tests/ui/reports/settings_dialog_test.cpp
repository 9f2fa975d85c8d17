#include "services/keep_cooldown_service.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "support/print_qt.h"
#include "support/temp_store.h"
#include "ui/settings/folder_probe.h"
#include "ui/settings/settings_dialog.h"
#include "ui/settings/settings_notes.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

#include <gmock/gmock.h>

namespace tally::test {
namespace {

using namespace Qt::StringLiterals;
using namespace tally::ui;

class SettingsDialogTest : public testing::Test {
protected:
    void open()
    {
        dialog_ = std::make_unique<SettingsDialog>(&settings_, &service_);
        dialog_->show();
    }
    QLineEdit &folder() const { return *dialog_->findChildren<QLineEdit *>().front(); }
    QLineEdit &hours() const
    {
        for (QLineEdit *edit : dialog_->findChildren<QLineEdit *>()) {
            if (edit->placeholderText() == u"e.g. 5,3,1"_s)
                return *edit;
        }
        throw std::runtime_error("no list of hours");
    }
    void press(const QString &button) const
    {
        for (QPushButton *candidate : dialog_->findChildren<QPushButton *>()) {
            if (candidate->text().remove(u'&') == button)
                return QTest::mouseClick(candidate, Qt::LeftButton);
        }
        FAIL() << "no such button";
    }
    /// What the box over the dialog says.
    static std::string box()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return "no box";
        const std::string text = box->text().section(u'.', 0, 0).toStdString();
        box->close();
        return text;
    }

    TempStore store_;
    Settings settings_{store_.db};
    services::KeepCooldownService service_{&store_.db, &settings_, nullptr, nullptr};
    std::unique_ptr<SettingsDialog> dialog_;
};

TEST_F(SettingsDialogTest, StoresWhatIsConfirmedAndNothingElse)
{
    settings_.set(settings::mailcache_dir, u"/old"_s);
    settings_.set(settings::keep_cooldown_hours, 300);
    store_.db.set_setting(u"keep_notify_enabled"_s, u"false"_s);
    open();
    EXPECT_EQ(folder().text(), u"/old"_s);
    EXPECT_EQ(dialog_->findChild<QSpinBox *>()->value(), 240);
    EXPECT_TRUE(dialog_->findChild<QCheckBox *>()->isChecked());
    folder().setText(u" /new "_s);
    const int width = dialog_->width();
    hours().setText(QString(400, u'x'));
    QCoreApplication::processEvents();
    EXPECT_EQ(dialog_->width(), width);
    press(u"Cancel"_s);
    EXPECT_EQ(settings_.get(settings::mailcache_dir), u"/old"_s);

    open();
    folder().setText(u" /new "_s);
    hours().setText(u" 7 2 "_s);
    dialog_->findChild<QCheckBox *>()->setChecked(false);
    QSignalSpy ticks(&service_, &services::KeepCooldownService::countdownTick);
    press(u"OK"_s);
    EXPECT_EQ(dialog_->result(), QDialog::Accepted);
    EXPECT_EQ(ticks.count(), 1);
    EXPECT_EQ(settings_.get(settings::mailcache_dir), u"/new"_s);
    EXPECT_EQ(settings_.get(settings::keep_cooldown_hours), 240);
    EXPECT_EQ(settings_.get(settings::keep_notify_before_hours), u"7 2"_s);
    EXPECT_EQ(store_.db.setting_or(u"keep_notify_enabled"_s, {}), u"0"_s);

    open();
    folder().clear();
    press(u"OK"_s);
    EXPECT_EQ(settings_.get(settings::mailcache_dir), u"/new"_s);
}

TEST_F(SettingsDialogTest, TestsTheAlerts)
{
    open();
    press(u"🔔 Test tray notification"_s);
    EXPECT_EQ(box(), "Tray notifications are unavailable on this system");
    QString title;
    services::KeepCooldownService::install_notice(
        [&title](const QString &shown, const QString &) { title = shown; });
    press(u"🔔 Test tray notification"_s);
    EXPECT_EQ(title, u"🏰 Barbarian Keep — TEST"_s);
    EXPECT_EQ(box(), "Tray balloon sent — look at the system-tray area OR Windows Notification "
                     "Center (Win+N)");
    services::KeepCooldownService::install_notice({});
    QSignalSpy ready(&service_, &services::KeepCooldownService::keepReady);
    press(u"🏰 Test overlay"_s);
    EXPECT_EQ(ready.count(), 1);
}

TEST(SettingsNotes, SayHowHoursAreUnderstood)
{
    const std::pair<QString, QString> cases[] = {
        {u"5,3,1"_s, u"warns 5, 3 and 1 h before"_s},
        {u"12"_s, u"warns 12 h before"_s},
        {u"5;; 3, 240 x"_s, u"warns 5 and 3 h before (not 1 to 239: 240, x)"_s},
        {u""_s, u"no warning in advance"_s}};
    for (const auto &[typed, note] : cases)
        EXPECT_EQ(hours_note(typed), note);
}

TEST(FolderProbe, DoesNotWaitForAFolderThatDoesNotAnswerAndThenLooksForTheLastOne)
{
    QSemaphore answers;
    QStringList looked_for;
    FolderProbe probe(nullptr, [&](const QString &folder) {
        answers.acquire();
        looked_for << folder;
        return folder == u"here"_s;
    });
    const QSignalSpy looked(&probe, &FolderProbe::looked);
    for (const QString &typed : {u"//h"_s, u"//he"_s, u"here"_s})
        probe.look(typed);
    EXPECT_EQ(looked.count(), 0);
    answers.release(2);
    ASSERT_TRUE(QTest::qWaitFor([&looked] { return looked.count() > 0; }));
    EXPECT_EQ(looked, (QList<QVariantList>{{true}}));
    EXPECT_EQ(looked_for, (QStringList{u"//h"_s, u"here"_s}));
}

TEST(SettingsNotes, MarkAFolderThatIsNotThere)
{
    const QTemporaryDir folder;
    const QString here = folder.path();
    EXPECT_EQ(folder_note(here + u"/"_s, here, true), FolderNote{});
    EXPECT_EQ(folder_note(here + u"/gone"_s, here, false),
              (FolderNote{u"This folder does not exist."_s, true}));
    EXPECT_EQ(
        folder_note(u' ' + here, u"/other"_s, true),
        (FolderNote{u"Watched from the next start on. File → Reimport mailcache... brings its "
                    "mails now."_s,
                    false}));
    EXPECT_EQ(browse_start(here + u"/gone"_s, u"/other"_s), here);
    EXPECT_EQ(browse_start(here + u"/gone/further"_s, u"/other"_s), QString());
    EXPECT_EQ(browse_start(u" "_s, here), here);
}

} // namespace
} // namespace tally::test
