#include "round_overview_shot.h"

#include "data/import/import_pipeline.h"
#include "data/master/master_cache.h"
#include "data/store/tally_db.h"
#include "reference_folder.h"
#include "sample_world.h"
#include "ui/chains/round_overview_window.h"
#include "ui/items/item_pictures.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QAbstractScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

namespace {

using namespace tally;

void load_reference(const QDir &folder)
{
    sample::write_reference_folder(folder.path());
    for (const QString &kind : {QStringLiteral("heroes"), QStringLiteral("items"),
                                QStringLiteral("barbs"), QStringLiteral("icons_index")}) {
        QFile table(folder.filePath(QStringLiteral("master/%1.json").arg(kind)));
        if (table.open(QIODevice::ReadOnly))
            data::MasterCache::instance().load_json(kind, table.readAll());
    }
    ui::forget_item_pictures();
}

void import_mails(data::TallyDb &db, const QString &mails)
{
    sample::WorldOptions options;
    options.count = 1500;
    options.days = 5;
    options.players = 1;
    sample::write_mail_folder(options, mails);
    db.init_schema();
    data::import_dir(mails, QString(), db, {}, nullptr);
}

std::unique_ptr<ui::RoundOverviewWindow> open_largest_pair(const QString &folder)
{
    const QDir dir(folder);
    load_reference(QDir(dir.filePath(QStringLiteral("reference"))));
    data::TallyDb db(dir.filePath(QStringLiteral("tally.db")));
    import_mails(db, dir.filePath(QStringLiteral("mails")));

    const data::HeroPair pair = db.hero_pairs(1.0, {}, {}, {}).at(0);
    const auto chains = db.chains_for_pair(pair.hero_1, pair.hero_2, 1.0, {}, {}, {});
    std::vector<std::optional<data::FortOfChain>> forts;
    for (const data::ChainRun &chain : chains)
        forts.push_back(chain.fort_file_name.isEmpty() ? std::nullopt
                                                       : db.fort_of_chain(chain.file_name));
    const data::MasterCache &names = data::MasterCache::instance();
    auto window = std::make_unique<ui::RoundOverviewWindow>(
        pair.hero_1, pair.hero_2, names.hero_name(pair.hero_1), names.hero_name(pair.hero_2),
        chains, forts, dir.filePath(QStringLiteral("reference/icon")));
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    window->show();
    QCoreApplication::processEvents();
    return window;
}

bool shows(const QWidget &window, const QString &text)
{
    return std::ranges::any_of(window.findChildren<QLabel *>(), [&text](const QLabel *label) {
        return label->isVisible() && label->text() == text;
    });
}

} // namespace

QPixmap round_overview_shot()
{
    const QTemporaryDir folder;
    const auto window = open_largest_pair(folder.path());
    QScrollBar *bar = window->findChild<QAbstractScrollArea *>()->verticalScrollBar();
    while (!shows(*window, QStringLiteral("Destroyed")) && bar->value() < bar->maximum())
        bar->triggerAction(QScrollBar::SliderPageStepAdd);
    return window->grab();
}
