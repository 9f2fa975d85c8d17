#include "data/import/battle_file.h"
#include "data/mail/battle_report.h"
#include "data/mail/fort_report.h"
#include "data/mail/trial_report.h"
#include "data/master/icon_file.h"
#include "data/master/master_cache.h"
#include "reference_folder.h"
#include "sample_world.h"
#include "support/print_qt.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace tally::sample {
namespace {

using data::MasterCache;

QByteArray content_of(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One folder for all cases, loaded into the cache.
class SampleReference : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        folder_ = new QTemporaryDir;
        write_reference_folder(folder_->path());
        MasterCache::instance().clear();
        for (const char *kind :
             {"heroes", "items", "inscriptions", "armaments", "barbs", "icons_index"})
            EXPECT_TRUE(MasterCache::instance().load_json(QLatin1StringView(kind), table(kind)))
                << kind;
    }
    static void TearDownTestSuite()
    {
        MasterCache::instance().clear();
        delete folder_;
    }

    static QByteArray table(const char *kind)
    {
        return content_of(
            folder_->filePath(QStringLiteral("master/%1.json").arg(QLatin1StringView(kind))));
    }
    static QJsonObject entries(const char *kind, const char *section)
    {
        return QJsonDocument::fromJson(table(kind))
            .object()
            .value(QLatin1StringView(section))
            .toObject();
    }
    static std::optional<QString> icon(const char *section, const QString &key)
    {
        return MasterCache::instance().icon_path(QLatin1StringView(section), key,
                                                 folder_->filePath(QStringLiteral("icon")));
    }

    static QTemporaryDir *folder_;
};

QTemporaryDir *SampleReference::folder_ = nullptr;

TEST_F(SampleReference, HasAnIconForEveryItemAndHero)
{
    for (const QJsonValue item : entries("items", "items")) {
        const QString key = item.toObject().value(QLatin1StringView("icon")).toString();
        EXPECT_TRUE(icon("all_loot", key)) << key.toStdString();
    }
    for (const QJsonValue hero : entries("heroes", "heroes")) {
        const QString file = hero.toObject().value(QLatin1StringView("icon")).toString();
        EXPECT_TRUE(icon("commanders", QFileInfo(file).baseName())) << file.toStdString();
    }
    EXPECT_TRUE(icon("commanders", QStringLiteral("unknown")));
    for (const char *key : {"crystals", "gems", "universal", "training", "healing", "Leather",
                            "Iron Ore", "Animal Bones", "Ebony"})
        EXPECT_TRUE(icon("loot", QLatin1StringView(key))) << key;
}

TEST_F(SampleReference, IconsArePicturesOnATransparentGround)
{
    ASSERT_TRUE(QImageReader::supportedImageFormats().contains("webp"))
        << "qt6-image-formats-plugins is missing";
    const QDir icons(folder_->filePath(QStringLiteral("icon")));
    const QStringList names = icons.entryList(QDir::Files);
    EXPECT_GT(names.size(), 80);
    for (const QString &name : names) {
        EXPECT_EQ(data::icon_file_name(QFileInfo(name).completeBaseName()), name);
        const QImage image(icons.filePath(name));
        ASSERT_EQ(image.size(), QSize(128, 128)) << name.toStdString();
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << name.toStdString();
        EXPECT_GT(qAlpha(image.pixel(64, 64)), 200) << name.toStdString();
    }
}

TEST_F(SampleReference, NamesWhatTheMadeUpMailsHold)
{
    const auto check_loot = [](const std::vector<data::LootEntry> &loot) {
        for (const data::LootEntry &entry : loot) {
            const data::ItemInfo item =
                MasterCache::instance().item(entry.item_type, entry.item_subtype);
            EXPECT_NE(item.name, QString()) << *entry.item_type << '/' << *entry.item_subtype;
            // What sums up speedups knows these alone.
            if (item.unit == u"min") {
                EXPECT_THAT(entry.item_subtype, testing::Optional(testing::AnyOf(34, 71, 72, 92)));
            }
        }
    };
    const auto check_hero = [](std::optional<double> id) {
        EXPECT_NE(MasterCache::instance().hero(id).name, QString()) << id.value_or(-1);
    };
    SampleWorld world({.seed = 3, .days = 10, .players = 2, .count = 300});
    int chains = 0;
    int others = 0;
    while (const auto mail = world.next()) {
        const QByteArrayView bytes = mail->bytes;
        const bool is_chain = mail->kind == MailKind::Chain || mail->kind == MailKind::FortChain;
        if (const auto battle =
                is_chain ? data::parse_battle(bytes, data::known_level) : std::nullopt) {
            ++chains;
            check_hero(battle->hero_id_1);
            check_hero(battle->hero_id_2);
            for (const data::BattleRound &round : battle->rounds) {
                check_loot(round.loot);
                EXPECT_TRUE(MasterCache::instance().barb(round.npc_type).level)
                    << round.npc_type.value_or(-1);
            }
        } else if (const auto trial = data::parse_trial(bytes)) {
            ++others;
            for (const data::TrialParticipant &participant : trial->participants)
                check_loot(participant.loot);
        } else if (const auto fort = data::parse_fort(bytes)) {
            ++others;
            check_loot(fort->loot);
        }
    }
    EXPECT_GT(chains, 20);
    EXPECT_GT(others, 20);
}

TEST_F(SampleReference, IsTheSameEachTime)
{
    const QTemporaryDir again;
    write_reference_folder(again.path());
    EXPECT_EQ(content_of(again.filePath(QStringLiteral("master/icons_index.json"))),
              table("icons_index"));
}

TEST(SampleReferenceFolder, SaysWhatItCannotWrite)
{
    const QTemporaryDir dir;
    QFile in_the_way(dir.filePath(QStringLiteral("master")));
    ASSERT_TRUE(in_the_way.open(QIODevice::WriteOnly));
    EXPECT_THAT(
        [&] { write_reference_folder(dir.path()); },
        testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr("master/heroes.json: ")));
}

} // namespace
} // namespace tally::sample
