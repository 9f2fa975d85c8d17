#include "sample_store.h"

#include "data/import/import_pipeline.h"
#include "data/master/master_cache.h"
#include "reference_folder.h"
#include "sample_world.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tally::tools {

SampleStore::SampleStore() : db_(folder_.filePath(QStringLiteral("tally.db")))
{
    db_.init_schema();
    load_reference_data();
    import_mails();
    keep_favorites();
}

QString SampleStore::icon_dir() const
{
    return folder_.filePath(QStringLiteral("reference/icon"));
}

void SampleStore::load_reference_data()
{
    const QString reference = folder_.filePath(QStringLiteral("reference"));
    sample::write_reference_folder(reference);
    const QDir tables(reference + QStringLiteral("/master"));
    for (const QFileInfo &table : tables.entryInfoList(QDir::Files)) {
        QFile file(table.filePath());
        if (file.open(QIODevice::ReadOnly))
            data::MasterCache::instance().load_json(table.completeBaseName(), file.readAll());
    }
}

void SampleStore::import_mails()
{
    const QString mails = folder_.filePath(QStringLiteral("mails"));
    const QString raw = folder_.filePath(QStringLiteral("raw"));
    sample::write_mail_folder({.days = 3, .players = 2, .count = 600, .end = end}, mails);
    QDir().mkpath(raw);
    data::import_dir(mails, raw, db_, {}, nullptr);
}

void SampleStore::keep_favorites()
{
    constexpr int mode_of_rallies = 1;
    for (const QVariant &attack : db_.field_attacks({}, {}, {}, 12, mode_of_rallies))
        db_.set_field_favorite(attack.toMap().value(QStringLiteral("file_name")).toString(), true);
}

} // namespace tally::tools
