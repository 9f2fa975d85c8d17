#include "support/window_fixture.h"

#include <QFile>
#include <QMessageBox>
#include <QPushButton>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::HasSubstr;

namespace {

class LostStore : public testing::Test {
protected:
    void SetUp() override
    {
        fixture_.setup.store_interval = 1ms;
        window_ = &fixture_.open();
        window_->show();
    }

    QMessageBox *box() const { return window_->findChild<QMessageBox *>(); }
    QPushButton *later_button() const
    {
        return window_->findChild<QPushButton *>(u"lostStoreButton"_s);
    }
    void answer(const QString &text) const
    {
        for (QAbstractButton *button : box()->buttons()) {
            if (button->text() == text)
                button->click();
        }
    }

    WindowFixture fixture_;
    ui::MainWindow *window_ = nullptr;
};

} // namespace

TEST_F(LostStore, IsToldOnceAndCanBeLeftOrTakenUpLater)
{
    EXPECT_FALSE(QTest::qWaitFor([this] { return box() != nullptr; }, 50));
    ASSERT_TRUE(QFile::remove(fixture_.store.path));
    ASSERT_TRUE(wait_until([this] { return box() != nullptr; }));
    EXPECT_THAT(box()->text().toStdString(), HasSubstr("tally.db\" was removed while"));
    answer(u"Not now"_s);
    ASSERT_TRUE(wait_until([this] { return box() == nullptr; }));
    EXPECT_FALSE(window_->wants_restart());
    ASSERT_TRUE(later_button());
    later_button()->click();
    ASSERT_TRUE(box());
    answer(u"Restart"_s);
    EXPECT_TRUE(window_->wants_restart());
    EXPECT_FALSE(window_->isVisible());
}

TEST_F(LostStore, OneThatWasReplacedIsNotOfferedANewOne)
{
    const TempStore other;
    ASSERT_EQ(std::rename(qPrintable(other.path), qPrintable(fixture_.store.path)), 0);
    ASSERT_TRUE(wait_until([this] { return box() != nullptr; }));
    EXPECT_THAT(box()->text().toStdString(), HasSubstr("was replaced while"));
    EXPECT_THAT(box()->informativeText().toStdString(), HasSubstr("the store that is there now"));
}
