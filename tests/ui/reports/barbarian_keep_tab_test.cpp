#include "services/keep_cooldown_service.h"
#include "settings/settings.h"
#include "support/report_page_fixture.h"
#include "ui/keep/barbarian_keep_tab.h"

namespace tally::test {
namespace {

using testing::ElementsAre;

class KeepPage : public ReportPage<ui::BarbarianKeepTab> {
protected:
    void open_page()
    {
        service_ = std::make_unique<services::KeepCooldownService>(
            &store_.db, &settings_, nullptr, nullptr, [this] { return now_; });
        open(std::make_unique<ui::BarbarianKeepTab>(&queries_, service_.get(), QString()));
    }
    void keep_kill(const QString &file, double time)
    {
        kill(file, time, {u"Ada"_s, u"<Bob>"_s}, u"Bloodfist Bargha"_s);
    }
    ui::ItemRowTable &kills() const { return table(u"Keep kills"_s); }

    ~KeepPage() override { page_.reset(); }

    Settings settings_{store_.db};
    std::unique_ptr<services::KeepCooldownService> service_;
};

TEST_F(KeepPage, ShowsWhoseKillsTheyAreAndTheCountdownOfTheNewest)
{
    keep_kill(u"k1"_s, noon - 70 * hour);
    open_page();
    page_->refresh();
    EXPECT_TRUE(says(u"🏰 Barbarian Keep — READY to kill!"_s));
    kills().select_key(u"k1"_s);
    keep_kill(u"k2"_s, noon - 2 * hour);
    page_->refresh();
    EXPECT_TRUE(says(u"🏰 Barbarian Keep — Ready in 66h 0min"_s));
    EXPECT_TRUE(says(u"Kills of Ada, ID 71 (2)"_s));
    EXPECT_THAT(column(kills(), 0), ElementsAre("2025-03-01 11:00", "2025-02-26 15:00"));
    EXPECT_THAT(column(kills(), 3), ElementsAre("50.00%", "50.00%"));
    EXPECT_EQ(kills().key_of(kills().currentIndex()), u"k1"_s);
}

TEST_F(KeepPage, OpensAKillWithEverybodysShare)
{
    keep_kill(u"k1"_s, noon - hour);
    open_page();
    double_click(kills(), 0);
    EXPECT_EQ(dialog().windowTitle(), u"Keep Kill — Bloodfist Bargha"_s);
    const QStringList texts = dialog_texts();
    EXPECT_TRUE(texts.contains(u"<Bob>"_s));
    EXPECT_TRUE(
        texts.join(u'\n').contains(u"2025-03-01 11:00:00 UTC &nbsp;·&nbsp; 2 participants"));
    close_dialog();
}

TEST_F(KeepPage, SaysWhatHasBecomeOfAKill)
{
    keep_kill(u"k1"_s, noon - hour);
    open_page();
    const auto message = [this] {
        double_click(kills(), 0);
        const auto &box = dynamic_cast<QMessageBox &>(dialog());
        const std::string text = (box.windowTitle() + u": "_s + box.text()).toStdString();
        close_dialog();
        return text;
    };
    sql(u"DELETE FROM trial_reports"_s);
    EXPECT_EQ(message(), "No data: Details for this kill are no longer available.");
    sql(u"ALTER TABLE trial_reports RENAME TO gone"_s);
    EXPECT_THAT(message(),
                testing::StartsWith("Error: Failed to load kill details: TallyDb fatal"));
    page_->refresh();
    EXPECT_EQ(kills().model()->rowCount(), 1);
}

} // namespace
} // namespace tally::test
