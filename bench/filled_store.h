#pragma once

#include "data/store/tally_db.h"
#include "queries/store_queries.h"
#include "settings/settings.h"
#include "store_filler.h"
#include "ui/parts/surroundings.h"

#include <QTemporaryDir>

namespace tally::bench {

/// A store of so many rounds with all their slices, in a folder of its own.
class FilledStore {
public:
    explicit FilledStore(int rounds) : db(filled(rounds)), queries(db), settings(db)
    {
        db.init_schema();
        db.complete_chain_slices();
    }

    /// What views on it stand in, with icons that are missing.
    ui::Surroundings surroundings(platform::Host &host)
    {
        return {.db = db,
                .queries = queries,
                .settings = settings,
                .host = host,
                .clock = [now = end] { return now; },
                .icon_dir = folder.path()};
    }

    const QTemporaryDir folder;
    const double end = tools::FillOptions().end; ///< of its reports

    data::TallyDb db;
    queries::StoreQueries queries;
    Settings settings;

private:
    QString filled(int rounds) const
    {
        const QString path = folder.filePath(QStringLiteral("tally.db"));
        tools::FillOptions options;
        options.rounds = rounds;
        tools::fill_store(path, options);
        return path;
    }
};

} // namespace tally::bench
