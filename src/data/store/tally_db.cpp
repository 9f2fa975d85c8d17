#include "data/store/tally_db.h"

#include "data/store/chain_conditions.h"
#include "data/store/chain_heads.h"
#include "data/store/chain_rounds.h"
#include "data/store/chain_statistics.h"
#include "data/store/field_fights.h"
#include "data/store/fort_links.h"
#include "data/store/forts.h"
#include "data/store/honor_log.h"
#include "data/store/keep_fights.h"
#include "data/store/mail_memory.h"
#include "data/store/report_writes.h"
#include "data/store/schema.h"
#include "data/store/setting_values.h"
#include "data/store/slice_upkeep.h"
#include "data/store/trials.h"

namespace tally::data {

TallyDb::TallyDb(QString path, platform::Clock clock, ItemLookup item_of)
    : clock_(std::move(clock)), item_of_(std::move(item_of)), store_(std::move(path))
{}

bool TallyDb::init_schema()
{
    return data::init_schema(store_, clock_());
}

ChangeStamp TallyDb::change_stamp() const
{
    return data::change_stamp(store_);
}

void TallyDb::complete_chain_slices(const std::atomic<bool> *cancel)
{
    constexpr int step = 200; // few enough not to keep other writers waiting
    look_after_derived_schema(store_);
    if (!slices_counted_.exchange(true))
        mark_miscounted_chains(store_);
    while (!(cancel && *cancel) && data::complete_chain_slices(store_, step) > 0) {
    }
}

int TallyDb::complete_chain_slices(int chains)
{
    return data::complete_chain_slices(store_, chains);
}

int TallyDb::stale_chain_count() const
{
    return data::stale_chain_count(store_);
}

ChainQuestion TallyDb::question(double btype, std::optional<double> from, std::optional<double> to,
                                std::optional<double> player) const
{
    return {btype, from, to, player, static_cast<ApSource>(free_ap_mode.load())};
}

ChainSqlFilter TallyDb::chain_filter(const QString &prefix, std::optional<double> from,
                                     std::optional<double> to, std::optional<double> player) const
{
    return data::chain_filter(prefix, question(0.0, from, to, player));
}

void TallyDb::insert_report(const QString &file_name, const BattleReport &report, double file_mtime)
{
    data::insert_report(store_, file_name, report, file_mtime, clock_());
}

void TallyDb::insert_field_report(const QString &file_name, const FieldReport &attacks,
                                  double file_mtime)
{
    data::insert_field_report(store_, file_name, attacks, file_mtime, clock_());
}

void TallyDb::insert_trial_report(const QString &file_name, const TrialReport &report,
                                  double file_mtime)
{
    data::insert_trial_report(store_, file_name, report, file_mtime);
}

void TallyDb::insert_fort_report(const QString &file_name, const FortReport &report,
                                 double file_mtime)
{
    data::insert_fort_report(store_, file_name, report, file_mtime);
}

bool TallyDb::report_exists(const QString &file_name) const
{
    return data::report_exists(store_, file_name);
}

bool TallyDb::field_report_exists(const QString &file_name) const
{
    return data::field_report_exists(store_, file_name);
}

bool TallyDb::trial_report_exists(const QString &file_name) const
{
    return data::trial_report_exists(store_, file_name);
}

bool TallyDb::fort_report_exists(const QString &file_name) const
{
    return data::fort_report_exists(store_, file_name);
}

ReportKinds TallyDb::stored_kinds(const QString &file_name) const
{
    return data::stored_kinds(store_, file_name);
}

KnownMail TallyDb::known_mail(const QString &file_name, const platform::FileStamp &stamp) const
{
    return data::known_mail(store_, file_name, stamp);
}

void TallyDb::note_examined(const std::vector<ExaminedMail> &mails)
{
    data::note_examined(store_, mails);
}

int TallyDb::link_fort_to_chains()
{
    return data::link_fort_to_chains(store_);
}

void TallyDb::set_field_favorite(const QString &file_name, bool favorite)
{
    data::set_field_favorite(store_, file_name, favorite);
}

bool TallyDb::is_field_favorite(const QString &file_name) const
{
    return data::is_field_favorite(store_, file_name);
}

std::vector<HonorLogRow> TallyDb::recent_honor_log(int limit) const
{
    return data::recent_honor_log(store_, limit);
}

std::optional<QString> TallyDb::get_setting(const QString &key) const
{
    return data::get_setting(store_, key);
}

QString TallyDb::setting_or(const QString &key, const QString &fallback) const
{
    return data::setting_or(store_, key, fallback);
}

void TallyDb::set_setting(const QString &key, const QString &value)
{
    data::set_setting(store_, key, value);
}

QMap<QString, QString> TallyDb::all_settings() const
{
    return data::all_settings(store_);
}

ChainSummary TallyDb::summary(const ChainQuestion &question) const
{
    return data::summary(store_, question);
}

ChainSummary TallyDb::summary(double btype, std::optional<double> from, std::optional<double> to,
                              std::optional<double> player) const
{
    return data::summary(store_, question(btype, from, to, player));
}

std::optional<BestChain> TallyDb::best_chain(const ChainQuestion &question) const
{
    return data::best_chain(store_, question);
}

std::optional<BestChain> TallyDb::best_chain(double btype, std::optional<double> from,
                                             std::optional<double> to,
                                             std::optional<double> player) const
{
    return data::best_chain(store_, question(btype, from, to, player));
}

std::optional<double> TallyDb::last_chain(double btype, std::optional<double> player) const
{
    return data::last_chain(store_, question(btype, {}, {}, player));
}

std::vector<LootStat> TallyDb::loot_stats(const ChainQuestion &question) const
{
    return data::loot_stats(store_, question, item_of_);
}

std::vector<LootStat> TallyDb::loot_stats(double btype, std::optional<double> from,
                                          std::optional<double> to,
                                          std::optional<double> player) const
{
    return data::loot_stats(store_, question(btype, from, to, player), item_of_);
}

std::array<int, 24> TallyDb::hourly(const ChainQuestion &question) const
{
    return data::hourly(store_, question);
}

std::array<int, 24> TallyDb::hourly(double btype, std::optional<double> from,
                                    std::optional<double> to, std::optional<double> player) const
{
    return data::hourly(store_, question(btype, from, to, player));
}

std::vector<HeroPair> TallyDb::hero_pairs(const ChainQuestion &question) const
{
    return data::hero_pairs(store_, question);
}

std::vector<HeroPair> TallyDb::hero_pairs(double btype, std::optional<double> from,
                                          std::optional<double> to,
                                          std::optional<double> player) const
{
    return data::hero_pairs(store_, question(btype, from, to, player));
}

std::vector<ChainRun> TallyDb::chains_for_pair(int hero_1, int hero_2,
                                               const ChainQuestion &question) const
{
    return data::chains_for_pair(store_, hero_1, hero_2, question, item_of_);
}

std::vector<ChainRun> TallyDb::chains_for_pair(int hero_1, int hero_2, double btype,
                                               std::optional<double> from, std::optional<double> to,
                                               std::optional<double> player) const
{
    return data::chains_for_pair(store_, hero_1, hero_2, question(btype, from, to, player),
                                 item_of_);
}

std::vector<ChainHead> TallyDb::chain_heads_for_pair(int hero_1, int hero_2,
                                                     const ChainQuestion &question) const
{
    return data::chain_heads_for_pair(store_, hero_1, hero_2, question);
}

std::vector<ChainRound> TallyDb::rounds_of(const QString &file_name) const
{
    return data::rounds_of(store_, file_name, item_of_);
}

std::optional<FortOfChain> TallyDb::fort_of_chain(const QString &file_name) const
{
    return data::fort_of_chain(store_, file_name);
}

std::vector<PlayerRow> TallyDb::players() const
{
    return data::players(store_);
}

int TallyDb::honor_since(double since) const
{
    return data::honor_since(store_, since);
}

int TallyDb::chain_file_count() const
{
    return data::chain_file_count(store_);
}

int TallyDb::report_count(std::optional<double> btype) const
{
    return data::report_count(store_, btype);
}

QVariantList TallyDb::field_attacks(std::optional<double> from, std::optional<double> to,
                                    std::optional<double> player, int limit, int mode) const
{
    return data::field_attacks(store_, from, to, player, limit, mode);
}

FieldSummary TallyDb::field_summary(std::optional<double> from, std::optional<double> to,
                                    std::optional<double> player, int mode) const
{
    return data::field_summary(store_, from, to, player, mode);
}

std::optional<QVariantMap> TallyDb::field_attack(const QString &file_name,
                                                 std::optional<double> attack_id) const
{
    return data::field_attack(store_, file_name, attack_id);
}

std::vector<PlayerRow> TallyDb::field_players() const
{
    return data::field_players(store_);
}

int TallyDb::field_report_count() const
{
    return data::field_report_count(store_);
}

std::vector<EnemyCount> TallyDb::top_enemies(int limit) const
{
    return data::top_enemies(store_, limit);
}

std::vector<TrialPlayerRow> TallyDb::trial_players(const QStringList &bosses,
                                                   std::optional<double> from,
                                                   std::optional<double> to) const
{
    return data::trial_players(store_, bosses, from, to);
}

std::vector<TrialSession> TallyDb::trial_sessions(const QStringList &bosses,
                                                  std::optional<double> from,
                                                  std::optional<double> to, int gap_minutes) const
{
    return data::trial_sessions(store_, bosses, from, to, gap_minutes);
}

std::vector<LootStat> TallyDb::trial_loot_stats(const QStringList &bosses,
                                                std::optional<double> from,
                                                std::optional<double> to, const QString &player,
                                                int *fights) const
{
    return data::trial_loot_stats(store_, bosses, from, to, player, fights, item_of_);
}

std::vector<SessionPlayer> TallyDb::session_players(const QStringList &files) const
{
    return data::session_players(store_, files);
}

std::vector<PlayerKill> TallyDb::player_kills(const QStringList &files, const QString &player) const
{
    return data::player_kills(store_, files, player);
}

std::optional<double> TallyDb::keep_player() const
{
    return data::keep_player(store_);
}

std::vector<KeepKill> TallyDb::keep_kills(double player_id, int limit) const
{
    return data::keep_kills(store_, player_id, limit);
}

std::optional<double> TallyDb::last_keep_kill(double player_id) const
{
    return data::last_keep_kill(store_, player_id);
}

std::optional<TrialDetail> TallyDb::trial_detail(const QString &file_name) const
{
    return data::trial_detail(store_, file_name);
}

std::vector<FortRow> TallyDb::fort_list(std::optional<double> from, std::optional<double> to,
                                        int min_level, int limit) const
{
    return data::fort_list(store_, from, to, min_level, limit);
}

std::vector<LootStat> TallyDb::fort_loot_stats(std::optional<double> from, std::optional<double> to,
                                               int min_level, int *fights) const
{
    return data::fort_loot_stats(store_, from, to, min_level, fights, item_of_);
}

std::optional<FortBattle> TallyDb::fort_battle(const QString &file_name) const
{
    return data::fort_battle(store_, file_name);
}

void TallyDb::log_honor_summary(std::optional<double> base_timestamp, std::optional<int> base_honor,
                                std::optional<double> new_timestamp, std::optional<int> new_honor,
                                std::optional<int> delta_reports, std::optional<int> estimated,
                                std::optional<int> discrepancy)
{
    data::log_honor_summary(store_, {clock_(), base_timestamp, base_honor, new_timestamp, new_honor,
                                     delta_reports, estimated, discrepancy});
}

} // namespace tally::data
