#include "sample_world.h"

#include "data/import/import_pipeline.h"
#include "data/mail/mail_value.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

namespace tally::sample {
namespace {

using namespace Qt::StringLiterals;
using data::ReportKind;
using data::ReportKinds;
using testing::AllOf;
using testing::Ge;
using testing::Le;

/// Whether the bytes hold one whole tree and nothing behind it.
bool is_one_tree(const QByteArray &bytes)
{
    const auto is_whole = [](QByteArrayView mail) {
        try {
            return !data::parse_bytes(mail).isEmpty();
        } catch (const data::ParseError &) {
            return false;
        }
    };
    return is_whole(bytes) && !is_whole(QByteArrayView(bytes).chopped(1));
}

struct SampleKind {
    const char *name;
    QByteArray (*mail)(quint32 seed);
    ReportKinds stored_as;
};

ReportKinds only(ReportKind kind)
{
    ReportKinds kinds;
    kinds.add(kind);
    return kinds;
}

class SampleMail : public testing::TestWithParam<SampleKind> {};

TEST_P(SampleMail, DependsOnItsSeedAloneAndIsStoredAsItsOwnKindOnly)
{
    const auto &[kind_name, mail, stored_as] = GetParam();
    EXPECT_EQ(mail(7), mail(7));
    EXPECT_NE(mail(7), mail(8));
    const test::TempMails mails;
    test::TempStore store;
    for (quint32 seed = 0; seed < 20; ++seed) {
        const QString name = u"Persistent.Mail.%1"_s.arg(seed);
        EXPECT_THAT(mail(seed).size(), AllOf(Ge(2000), Le(200000))) << seed;
        const QString path = mails.add(name, mail(seed));
        const bool is_report = stored_as != ReportKinds();
        EXPECT_EQ(data::import_file(path, {}, store.db), is_report);
        EXPECT_FALSE(data::import_file(path, {}, store.db));
        ASSERT_EQ(store.db.stored_kinds(name).sum(), stored_as.sum()) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(
    , SampleMail,
    testing::Values(SampleKind{"chain", sample_chain_mail, only(ReportKind::battle)},
                    SampleKind{"field", sample_field_mail, only(ReportKind::field)},
                    SampleKind{"trial", sample_trial_mail, only(ReportKind::trial)},
                    SampleKind{"keep", sample_keep_mail, only(ReportKind::trial)},
                    SampleKind{"fort", sample_fort_mail, only(ReportKind::fort)},
                    SampleKind{"other", sample_other_mail, {}}),
    [](const auto &kind) { return std::string(kind.param.name); });

TEST(LargeFieldMail, IsOneTreeOfTwelveAttacks)
{
    const QByteArray mail = large_field_mail();
    EXPECT_THAT(mail.size(), AllOf(Ge(185000), Le(205000)));
    EXPECT_TRUE(is_one_tree(mail));
    const QVariantMap tree = data::parse_bytes(mail);
    EXPECT_EQ(data::find_first(tree, u"Attacks"_s).toMap().size(), 12);
}

TEST(SampleWorld, EveryKindOccursAndEveryReportIsOneTreeOfItsOwnName)
{
    std::map<MailKind, int> mails;
    std::set<QString> names;
    SampleWorld world({.count = 1500});
    while (const std::optional<WorldMail> mail = world.next()) {
        ++mails[mail->kind];
        EXPECT_TRUE(names.insert(mail->file_name).second) << qPrintable(mail->file_name);
        EXPECT_TRUE(data::is_mail_file(mail->file_name)) << qPrintable(mail->file_name);
        EXPECT_TRUE(mail->kind == MailKind::Other || is_one_tree(mail->bytes));
    }
    EXPECT_THAT(mails[MailKind::Other], AllOf(Ge(675), Le(825)));
    for (const auto kind : {MailKind::Chain, MailKind::FortChain, MailKind::Field, MailKind::Trial,
                            MailKind::Fort, MailKind::Keep})
        EXPECT_GE(mails[kind], 7);
}

} // namespace
} // namespace tally::sample
