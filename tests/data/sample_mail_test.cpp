#include "sample_world.h"

#include "mail/mail_value.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

namespace tally::sample {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::Le;

constexpr double fort_damage = 1500000.0;

std::vector<WorldMail> mails_of(const WorldOptions &options)
{
    std::vector<WorldMail> mails;
    SampleWorld world(options);
    while (std::optional<WorldMail> mail = world.next())
        mails.push_back(std::move(*mail));
    return mails;
}

const std::vector<WorldMail> &usual_mails()
{
    static const std::vector<WorldMail> mails = mails_of({.count = 1500});
    return mails;
}

bool is_chain(MailKind kind)
{
    return kind == MailKind::Chain || kind == MailKind::FortChain;
}

/// Whether the bytes hold one whole tree and nothing behind it.
bool is_one_tree(const QByteArray &bytes)
{
    try {
        data::parse_bytes(bytes);
    } catch (const data::ParseError &) {
        return false;
    }
    try {
        data::parse_bytes(QByteArrayView(bytes).chopped(1));
    } catch (const data::ParseError &) {
        return true;
    }
    return false;
}

/// The attacks of a mail in their order.
std::vector<QVariantMap> attacks_of(const QByteArray &bytes)
{
    const QVariantMap attacks =
        data::find_first(data::parse_bytes(bytes), QStringLiteral("Attacks")).toMap();
    std::vector<QVariantMap> result;
    for (qsizetype i = 1; i <= attacks.size(); ++i)
        result.push_back(attacks.value(QString::number(i)).toMap());
    return result;
}

double number_in(const QVariantMap &attack, const QString &map, const QString &key)
{
    return attack.value(map).toMap().value(key).toDouble();
}

using Sample = QByteArray (*)(quint32);

class SingleSample : public testing::TestWithParam<Sample> {};

TEST_P(SingleSample, DependsOnItsSeedAlone)
{
    EXPECT_EQ(GetParam()(7), GetParam()(7));
    EXPECT_NE(GetParam()(7), GetParam()(8));
}

TEST_P(SingleSample, HasTheSizeOfAMail)
{
    for (quint32 seed = 0; seed < 200; ++seed)
        EXPECT_THAT(GetParam()(seed).size(), AllOf(Ge(2000), Le(200000))) << seed;
}

INSTANTIATE_TEST_SUITE_P(Kinds, SingleSample,
                         testing::Values(sample_chain_mail, sample_field_mail, sample_trial_mail,
                                         sample_keep_mail, sample_fort_mail, sample_other_mail));

TEST(LargeFieldMail, IsOneTreeOfTwelveAttacks)
{
    const QByteArray mail = large_field_mail();
    EXPECT_THAT(mail.size(), AllOf(Ge(185000), Le(205000)));
    EXPECT_TRUE(is_one_tree(mail));
    EXPECT_EQ(attacks_of(mail).size(), 12U);
}

TEST(SampleWorld, MostMailsAreOfNoInterestAndEveryKindOccurs)
{
    std::map<MailKind, double> share;
    for (const WorldMail &mail : usual_mails())
        share[mail.kind] += 1.0 / static_cast<double>(usual_mails().size());
    EXPECT_EQ(usual_mails().size(), 1500U);
    EXPECT_THAT(share[MailKind::Other], AllOf(Ge(0.45), Le(0.55)));
    EXPECT_THAT(share[MailKind::Chain] + share[MailKind::FortChain], AllOf(Ge(0.15), Le(0.2)));
    EXPECT_GE(share[MailKind::FortChain], 0.02);
    EXPECT_GE(share[MailKind::Field], 0.1);
    EXPECT_GE(share[MailKind::Trial], 0.08);
    EXPECT_GE(share[MailKind::Fort], 0.04);
    EXPECT_GE(share[MailKind::Keep], 0.005);
}

TEST(SampleWorld, SizesAreSkewedBetweenTwoAndTwoHundredKilobytes)
{
    std::vector<qsizetype> sizes;
    for (const WorldMail &mail : usual_mails())
        sizes.push_back(mail.bytes.size());
    std::sort(sizes.begin(), sizes.end());
    EXPECT_GE(sizes.front(), 2000);
    EXPECT_LE(sizes.back(), 200000);
    EXPECT_THAT(sizes[sizes.size() / 2], AllOf(Ge(5000), Le(10000)));
    EXPECT_GE(sizes.back(), 60000);
}

TEST(SampleWorld, EveryReportIsOneTree)
{
    int damaged = 0;
    for (const WorldMail &mail : usual_mails()) {
        const bool is_valid = is_one_tree(mail.bytes);
        damaged += !is_valid;
        EXPECT_TRUE(is_valid || mail.kind == MailKind::Other) << qPrintable(mail.file_name);
    }
    EXPECT_THAT(damaged, AllOf(Ge(1), Le(30)));
}

TEST(SampleWorld, NamesAreThoseOfMailFilesAndUnique)
{
    static const QRegularExpression shape(QStringLiteral("^Persistent\\.Mail\\.\\d+$"));
    std::set<QString> names;
    for (const WorldMail &mail : usual_mails()) {
        EXPECT_TRUE(shape.match(mail.file_name).hasMatch()) << qPrintable(mail.file_name);
        EXPECT_TRUE(names.insert(mail.file_name).second) << qPrintable(mail.file_name);
    }
}

TEST(SampleWorld, ModificationTimesSpreadOverTheDays)
{
    const WorldOptions options;
    std::set<qint64> days;
    qsizetype with_fraction = 0;
    for (const WorldMail &mail : usual_mails()) {
        const double age = options.end - static_cast<double>(mail.mtime_ms) / 1000.0;
        EXPECT_THAT(age, AllOf(Ge(0.0), Le(options.days * 86400.0)));
        days.insert(static_cast<qint64>(age / 86400.0));
        with_fraction += mail.mtime_ms % 1000 != 0;
    }
    EXPECT_EQ(days.size(), static_cast<std::size_t>(options.days));
    EXPECT_GT(with_fraction, 1450);
}

TEST(SampleWorld, ChainMailsAreRecognisedByTheirFirstBytes)
{
    for (const WorldMail &mail : usual_mails()) {
        const qsizetype loot = mail.bytes.left(32768).indexOf("NpcKillLoot");
        EXPECT_EQ(loot >= 0, is_chain(mail.kind)) << qPrintable(mail.file_name);
    }
}

TEST(SampleWorld, OnlyMarkedRoundsOfSquareRalliesDealTheDamageOfAFort)
{
    for (const WorldMail &mail : usual_mails()) {
        if (!is_chain(mail.kind))
            continue;
        const bool is_rally = mail.bytes.contains("SquareRally");
        for (const QVariantMap &attack : attacks_of(mail.bytes)) {
            const bool is_marked =
                attack.value(QStringLiteral("CIdt")).toMap().contains(QStringLiteral("IsFort"));
            const double dealt = number_in(attack, QStringLiteral("Kill"), QStringLiteral("Death"));
            EXPECT_EQ(dealt >= fort_damage, is_marked) << qPrintable(mail.file_name);
            EXPECT_TRUE(is_rally || !is_marked) << qPrintable(mail.file_name);
        }
    }
}

TEST(SampleWorld, ABarbarianIsMetAgainOnlyAfterARoundWithoutLoot)
{
    std::map<double, bool> was_won; // by CtId, in its latest round
    int met_again = 0;
    int then_won = 0;
    for (const WorldMail &mail : usual_mails()) {
        if (!is_chain(mail.kind))
            continue;
        std::set<double> of_this_chain;
        for (const QVariantMap &attack : attacks_of(mail.bytes)) {
            const double id = number_in(attack, QStringLiteral("CIdt"), QStringLiteral("CtId"));
            const bool is_won = !attack.value(QStringLiteral("NpcKillLoot")).toMap().isEmpty();
            const auto earlier = was_won.find(id);
            if (earlier != was_won.end() &&
                !attack.value(QStringLiteral("CIdt")).toMap().contains(QStringLiteral("IsFort"))) {
                EXPECT_FALSE(earlier->second) << id;
                ++met_again;
                then_won += is_won;
            }
            was_won[id] = is_won;
            EXPECT_TRUE(of_this_chain.insert(id).second) << id;
        }
    }
    EXPECT_GE(met_again, 50);
    EXPECT_GE(then_won, 40);
    EXPECT_LT(then_won, met_again);
}

class PlannedWorld : public testing::TestWithParam<WorldOptions> {
protected:
    const std::vector<PlannedMail> mails = plan_world(GetParam());
};

TEST_P(PlannedWorld, HasTheWantedNumberOfMails)
{
    EXPECT_EQ(std::ssize(mails), GetParam().count);
}

TEST_P(PlannedWorld, ChainsOfOnePlayerStartAtLeast700SecondsApart)
{
    std::map<int, double> latest;
    for (const PlannedMail &mail : mails) {
        if (!is_chain(mail.kind))
            continue;
        const auto earlier = latest.find(mail.player);
        EXPECT_TRUE(earlier == latest.end() || mail.time - earlier->second >= 700.0) << mail.time;
        latest[mail.player] = mail.time;
    }
}

TEST_P(PlannedWorld, FortsHaveOneChainStartNearOrNone)
{
    std::vector<double> starts;
    for (const PlannedMail &mail : mails)
        if (is_chain(mail.kind))
            starts.push_back(mail.time);
    std::map<qsizetype, int> forts_by_chains_near;
    for (const PlannedMail &mail : mails) {
        if (mail.kind != MailKind::Fort)
            continue;
        const auto first = std::lower_bound(starts.begin(), starts.end(), mail.time - 300.0);
        const auto last = std::upper_bound(starts.begin(), starts.end(), mail.time + 300.0);
        ++forts_by_chains_near[last - first];
    }
    for (const auto &[chains, forts] : forts_by_chains_near)
        EXPECT_LE(chains, 1) << forts << " forts";
    EXPECT_GE(forts_by_chains_near[0], 5);
    EXPECT_GE(forts_by_chains_near[1], 5);
}

TEST_P(PlannedWorld, KeepKillsOfOnePlayerAre68HoursApart)
{
    std::map<int, double> latest;
    for (const PlannedMail &mail : mails) {
        if (mail.kind != MailKind::Keep)
            continue;
        const auto earlier = latest.find(mail.player);
        if (earlier != latest.end()) {
            EXPECT_THAT((mail.time - earlier->second) / 3600.0, AllOf(Ge(68.0), Le(72.0)));
        }
        latest[mail.player] = mail.time;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Densities, PlannedWorld,
    testing::Values(WorldOptions{}, WorldOptions{.seed = 2, .days = 1, .players = 1, .count = 5000},
                    WorldOptions{.seed = 3, .days = 2, .players = 40, .count = 9000},
                    WorldOptions{.seed = 4, .days = 900, .players = 2, .count = 1000}));

/// Name, content and modification time of each file of a folder.
std::map<QString, std::pair<QByteArray, qint64>> content_of(const QString &dir)
{
    std::map<QString, std::pair<QByteArray, qint64>> result;
    for (const QFileInfo &info : QDir(dir).entryInfoList(QDir::Files)) {
        QFile file(info.filePath());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        result[info.fileName()] = {file.readAll(), info.lastModified().toMSecsSinceEpoch()};
    }
    return result;
}

TEST(MailFolder, HoldsTheWorldAndIsTheSameEachTime)
{
    const QTemporaryDir folder;
    const WorldOptions options{.count = 60};
    const QString once = folder.filePath(QStringLiteral("a/once"));
    const QString again = folder.filePath(QStringLiteral("again"));
    const QString other = folder.filePath(QStringLiteral("other"));
    write_mail_folder(options, once);
    write_mail_folder(options, again);
    write_mail_folder({.seed = 2, .count = 60}, other);

    std::map<QString, std::pair<QByteArray, qint64>> expected;
    for (const WorldMail &mail : mails_of(options))
        expected[mail.file_name] = {mail.bytes, mail.mtime_ms};
    EXPECT_EQ(content_of(once), expected);
    EXPECT_EQ(content_of(again), expected);
    EXPECT_NE(content_of(other), expected);
}

TEST(MailFolder, AFolderThatCannotBeMadeIsAnError)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("file"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_THROW(write_mail_folder({.count = 1}, path), std::runtime_error);
}

} // namespace
} // namespace tally::sample
