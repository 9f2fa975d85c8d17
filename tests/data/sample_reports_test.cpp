#include "import/import_pipeline.h"
#include "sample_mails.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"

#include <gtest/gtest.h>

namespace tally::data {
namespace {

struct SampleKind {
    const char *name;
    QByteArray (*mail)(quint32 seed);
    std::vector<bool> stored_as; ///< battle, field, trial, fort
};

class SampleMail : public testing::TestWithParam<SampleKind> {};

TEST_P(SampleMail, IsStoredAsItsOwnKindOnly)
{
    const test::TempMails mails;
    test::TempStore store;
    for (quint32 seed = 0; seed < 20; ++seed) {
        const QString name = QStringLiteral("Persistent.Mail.%1").arg(seed);
        import_file(mails.add(name, GetParam().mail(seed)), {}, store.db);
        const StoredKinds kinds = store.db.stored_kinds(name);
        ASSERT_EQ((std::vector{kinds.battle, kinds.field, kinds.trial, kinds.fort}),
                  GetParam().stored_as)
            << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(
    , SampleMail,
    testing::Values(SampleKind{"chain", sample::sample_chain_mail, {true, false, false, false}},
                    SampleKind{"field", sample::sample_field_mail, {false, true, false, false}},
                    SampleKind{"trial", sample::sample_trial_mail, {false, false, true, false}},
                    SampleKind{"keep", sample::sample_keep_mail, {false, false, true, false}},
                    SampleKind{"fort", sample::sample_fort_mail, {false, false, false, true}},
                    SampleKind{"other", sample::sample_other_mail, {false, false, false, false}}),
    [](const auto &kind) { return std::string(kind.param.name); });

} // namespace
} // namespace tally::data
