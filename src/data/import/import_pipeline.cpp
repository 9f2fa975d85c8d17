#include "data/import/import_pipeline.h"

#include "data/import/battle_file.h"
#include "data/import/examined_mails.h"
#include "data/import/import_log.h"
#include "data/import/mail_file.h"
#include "data/import/raw_copies.h"
#include "data/mail/battle_report.h"
#include "data/mail/field_report.h"
#include "data/mail/fort_report.h"
#include "data/mail/key_marker.h"
#include "data/mail/refusal.h"
#include "data/mail/trial_report.h"
#include "data/store/tally_db.h"
#include "platform/files/exact_files.h"
#include "platform/log/error_stream.h"

#include <QDir>
#include <QFileInfo>

namespace tally::data {
namespace {

constexpr qint32 progress_step = 200; // files

constexpr QByteArrayView kill_loot("NpcKillLoot");
constexpr QByteArrayView trial_word("BarCanyonKillBoss");
constexpr QByteArrayView fort_word("Barbarian Fort");

QByteArrayView battle_tag()
{
    static const QByteArray tag = key_marker("Battle");
    return tag;
}

QByteArrayView attacks_tag()
{
    static const QByteArray tag = key_marker("Attacks");
    return tag;
}

/// One way in which a mail can be a report. Stages are tried in turn and know nothing of each
/// other.
struct Stage {
    ReportKind kind;
    bool (*looks_right)(MailFile &);
    /// Extracts and stores the report. \return whether there was one.
    bool (*store)(MailFile &, TallyDb &);
};

bool store_battle(MailFile &mail, TallyDb &db)
{
    const auto report = parse_battle(mail.all(), known_level);
    if (!report || report->rounds.empty())
        return false;
    db.insert_report(mail.name(), *report, mail.modified());
    return true;
}

bool store_field(MailFile &mail, TallyDb &db)
{
    const auto attacks = parse_field(mail.all());
    if (!attacks || attacks->isEmpty())
        return false;
    db.insert_field_report(mail.name(), *attacks, mail.modified());
    return true;
}

bool store_trial(MailFile &mail, TallyDb &db)
{
    const auto report = parse_trial(mail.all());
    if (!report || report->participants.empty())
        return false;
    db.insert_trial_report(mail.name(), *report, mail.modified());
    return true;
}

bool store_fort(MailFile &mail, TallyDb &db)
{
    const auto report = parse_fort(mail.all());
    if (!report || report->loot.empty())
        return false;
    db.insert_fort_report(mail.name(), *report, mail.modified());
    return true;
}

bool looks_like_field(MailFile &mail)
{
    // The head of a long file often settles the question, and spares reading the rest.
    if (mail.is_longer_than_head() && holds(mail.head(), kill_loot))
        return false;
    const QByteArrayView all = mail.all();
    return holds(all, battle_tag()) && holds(all, attacks_tag()) && !holds(all, kill_loot);
}

constexpr Stage stages[] = {
    {ReportKind::battle,
     [](MailFile &mail) {
         return holds(mail.head(), kill_loot) && holds(mail.head(), battle_tag());
     },
     store_battle},
    {ReportKind::field, looks_like_field, store_field},
    {ReportKind::trial, [](MailFile &mail) { return holds(mail.head(), trial_word); }, store_trial},
    {ReportKind::fort, [](MailFile &mail) { return holds(mail.head(), fort_word); }, store_fort},
};
static_assert(covers_report_kinds(stages));

/// What looking through a mail came to.
struct Examination {
    ReportKinds stored;  ///< by now
    bool is_new = false; ///< whether any of it was stored just now
    std::optional<QString> failure = {};
};

/// A stage that fails leaves no rows, and the file is offered again at the next import.
Examination examine(MailFile &mail, ReportKinds known, TallyDb &db)
{
    Examination result{.stored = known};
    for (const Stage &stage : stages) {
        if (known.holds(stage.kind))
            continue;
        try {
            if (stage.looks_right(mail) && stage.store(mail, db)) {
                result.stored.add(stage.kind);
                result.is_new = true;
            }
        } catch (const OversizedMail &refusal) {
            log_refusal(mail.name(), refusal); // and it will not shrink: no failure to try again
        } catch (const std::exception &failure) {
            result.failure = platform::text_of(failure);
        }
    }
    return result;
}

/// As `import_mail`, but passes over a mail that is known to have given all it holds.
MailImport import_unless_examined(const QString &path, const QString &raw_dir, TallyDb &db,
                                  ExaminedMails &examined)
{
    MailFile mail(path);
    const auto stamp_before = platform::file_stamp(path).value_or(platform::FileStamp{});
    keep_raw_copy(path, stamp_before.size, raw_dir);
    const KnownMail known = db.known_mail(mail.name(), stamp_before);
    // Equality, for rows may have gone since: then the mail is to give them again.
    if (known.examined == known.stored)
        return {};
    const Examination result = examine(mail, known.stored, db);
    if (const auto stamp = mail.stamp_if_read(); stamp && !result.failure)
        examined.note({mail.name(), *stamp, result.stored});
    return {result.is_new, result.failure};
}

/// The names of the mails in a folder that is there.
QStringList mail_names(const QString &dir, ImportTrouble &trouble)
{
    platform::FolderListing listing = platform::list_folder(dir);
    trouble.unlisted = listing.failure;
    listing.names.removeIf([](const QString &name) { return !is_mail_file(name); });
    return listing.names;
}

void link_forts(TallyDb &db)
{
    try {
        const int linked = db.link_fort_to_chains();
        if (linked > 0)
            qCInfo(log_import) << "link_fort_to_chains linked" << linked << "forts";
    } catch (const std::exception &failure) {
        qCWarning(log_import) << "link_fort_to_chains EXC:" << failure.what();
    }
}

/// Linking a folder of forts marks rounds of more chains than it adds up anew itself.
void complete_statistics(TallyDb &db, const std::atomic<bool> *cancel)
{
    try {
        db.complete_chain_slices(cancel);
    } catch (const std::exception &) {
        // Logged by the store, whose figures come without them too.
    }
}

} // namespace

bool is_mail_file(const QString &name)
{
    return name.startsWith(u"Persistent.Mail.");
}

bool import_file(const QString &path, const QString &raw_dir, TallyDb &db)
{
    return import_mail(path, raw_dir, db).is_new;
}

MailImport import_mail(const QString &path, const QString &raw_dir, TallyDb &db)
{
    MailFile mail(path);
    keep_raw_copy(path, platform::file_stamp(path).value_or(platform::FileStamp{}).size, raw_dir);
    Examination result = examine(mail, db.stored_kinds(mail.name()), db);
    return {result.is_new, std::move(result.failure)};
}

ImportStats import_dir(const QString &dir, const QString &raw_dir, TallyDb &db,
                       const ImportProgress &progress, const std::atomic<bool> *cancel)
{
    if (!QFileInfo(dir).isDir())
        return {.errors = 1};
    remove_torn_copies(raw_dir);
    ImportStats stats;
    const QDir folder(platform::exact_path(dir));
    const QStringList names = mail_names(folder.path(), stats.trouble);
    const auto total = static_cast<qint32>(names.size());

    ExaminedMails examined(db);
    for (const QString &name : names) {
        if (cancel && *cancel)
            break;
        try {
            const auto mail = import_unless_examined(folder.filePath(name), raw_dir, db, examined);
            stats.imported += mail.is_new ? 1 : 0;
            if (mail.failure)
                stats.trouble.add(name, *mail.failure);
        } catch (const std::exception &failure) {
            ++stats.errors;
            stats.trouble.add(name, platform::text_of(failure));
        } catch (...) {
            ++stats.errors;
            stats.trouble.add(name, QStringLiteral("unknown failure"));
        }
        ++stats.scanned;
        if (progress && stats.scanned % progress_step == 0)
            progress(stats.scanned, total, stats.imported);
    }
    if (progress)
        progress(stats.scanned, total, stats.imported);
    link_forts(db);
    complete_statistics(db, cancel);
    stats.trouble.lost_store = !db.is_in_place();
    if (stats.trouble.any())
        qCWarning(log_import).noquote()
            << "import of" << dir << "is incomplete:" << text_of(stats.trouble);
    return stats;
}

} // namespace tally::data
