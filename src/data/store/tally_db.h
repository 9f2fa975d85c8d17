#pragma once

#include "data/mail/field_report.h"
#include "data/master/item_facts.h"
#include "data/store/records.h"
#include "data/store/store_connection.h"
#include "platform/clock/clock.h"

#include <QMap>
#include <QSqlDatabase>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <array>
#include <atomic>
#include <optional>
#include <vector>

namespace tally::data {

struct BattleReport;
struct FortReport;
struct TrialReport;

/// The one gateway to the SQLite store: the face of the functions in this folder, which take the
/// store's `StoreConnection`. Every failing statement throws `std::runtime_error` with the text
/// "TallyDb fatal: %1: %2" (what was tried, what the database said).
///
/// Any thread may call any member: each thread gets a connection of its own at first use, writers
/// take turns, readers wait for nobody and see the last commit. The object outlives all who use it.
/// Times are seconds since the Unix epoch.
class TallyDb {
public:
    /// Opens nothing yet.
    /// \param item_of what statistics of loot know about items
    explicit TallyDb(QString path, platform::Clock clock = platform::system_time,
                     ItemLookup item_of = known_item);

    /// What the functions of this folder take.
    const StoreConnection &store() const { return store_; }
    const QString &path() const { return store_.file().path(); }
    /// False if the file that was opened first has been removed or replaced since. Connections that
    /// are open go on with it, but nothing of it is left when the program ends; new ones fail.
    bool is_in_place() const { return store_.file().is_in_place(); }

    /// The calling thread's open connection.
    QSqlDatabase connection() const { return store_.connection(); }

    /// Equal stamps of one thread: no report has changed in between. To be asked outside of
    /// transactions.
    ChangeStamp change_stamp() const;

    /// Brings the database to the present schema; to be called once, before any other member.
    /// \return whether a table of an old shape was dropped, so that its mails will be imported
    /// anew.
    bool init_schema();

    // Reports. An insert replaces all rows that its mail left before.
    void insert_report(const QString &file_name, const BattleReport &report, double file_mtime);
    void insert_field_report(const QString &file_name, const FieldReport &attacks,
                             double file_mtime);
    void insert_trial_report(const QString &file_name, const TrialReport &report,
                             double file_mtime);
    void insert_fort_report(const QString &file_name, const FortReport &report, double file_mtime);
    bool report_exists(const QString &file_name) const;
    bool field_report_exists(const QString &file_name) const;
    bool trial_report_exists(const QString &file_name) const;
    bool fort_report_exists(const QString &file_name) const;
    /// All four at once, for little more than the price of one.
    ReportKinds stored_kinds(const QString &file_name) const;

    KnownMail known_mail(const QString &file_name, const platform::FileStamp &stamp) const;
    /// For `known_mail` to tell: a memory that only saves work.
    void note_examined(const std::vector<ExaminedMail> &mails);

    /// Ties each fort without a link to the chain whose start lies nearest, at most 300 seconds
    /// away; chains with a known fort round come first. \return how many forts were linked.
    int link_fort_to_chains();

    // Statistics of chains are read from what is kept added up of each chain. A store of an older
    // version, or one that another program has changed, has chains that are not added up: whoever
    // asks for a statistic has them added up first, which may take seconds. Who wants to say that
    // it is counting adds them up in steps before he asks.

    /// Adds all of them up, also those whose rows were changed unseen. To be called on a worker's
    /// thread; others can write meanwhile.
    void complete_chain_slices(const std::atomic<bool> *cancel = nullptr);
    /// Adds up `chains` of them, or as many as there are. \return how many are left
    int complete_chain_slices(int chains);
    /// How many are not added up.
    int stale_chain_count() const;

    // Favourites: the game's own mail box "Archive" serves as the flag.
    void set_field_favorite(const QString &file_name, bool favorite);
    bool is_field_favorite(const QString &file_name) const;

    // Honor log.
    void log_honor_summary(std::optional<double> base_timestamp, std::optional<int> base_honor,
                           std::optional<double> new_timestamp, std::optional<int> new_honor,
                           std::optional<int> delta_reports, std::optional<int> estimated,
                           std::optional<int> discrepancy);
    std::vector<HonorLogRow> recent_honor_log(int limit) const; ///< newest first

    // Settings: texts by key. A stored empty text counts as a value.
    std::optional<QString> get_setting(const QString &key) const;
    QString setting_or(const QString &key, const QString &fallback) const;
    void set_setting(const QString &key, const QString &value);
    QMap<QString, QString> all_settings() const;

    // Chain statistics. `from` is included, `to` is not; both look at a chain's start, or at its
    // mail's modification time where the start is missing. Fort rounds count nowhere but in
    // `honor_since`.

    /// Which rounds all chain statistics look at: 0 all, 1 those that cost action points, 2 those
    /// that were free. Set and read without a lock.
    std::atomic<int> free_ap_mode = 0;

    /// The same in one record, with `free_ap_mode`.
    ChainQuestion question(double btype, std::optional<double> from, std::optional<double> to,
                           std::optional<double> player) const;

    /// The conditions for a table whose columns have this prefix ("r." or "").
    ChainSqlFilter chain_filter(const QString &prefix, std::optional<double> from,
                                std::optional<double> to, std::optional<double> player) const;
    ChainSummary summary(const ChainQuestion &question) const;
    ChainSummary summary(double btype, std::optional<double> from, std::optional<double> to,
                         std::optional<double> player) const;
    /// The chain with the most won rounds, among those the shortest.
    std::optional<BestChain> best_chain(const ChainQuestion &question) const;
    std::optional<BestChain> best_chain(double btype, std::optional<double> from,
                                        std::optional<double> to,
                                        std::optional<double> player) const;
    /// When the newest chain began.
    std::optional<double> last_chain(double btype, std::optional<double> player) const;
    std::vector<LootStat> loot_stats(const ChainQuestion &question) const;
    std::vector<LootStat> loot_stats(double btype, std::optional<double> from,
                                     std::optional<double> to, std::optional<double> player) const;
    /// Chains by the local hour of their start.
    std::array<int, 24> hourly(const ChainQuestion &question) const;
    std::array<int, 24> hourly(double btype, std::optional<double> from, std::optional<double> to,
                               std::optional<double> player) const;
    /// The pair with the most chains first.
    std::vector<HeroPair> hero_pairs(const ChainQuestion &question) const;
    std::vector<HeroPair> hero_pairs(double btype, std::optional<double> from,
                                     std::optional<double> to, std::optional<double> player) const;
    /// The newest chain first, each with all its rounds.
    std::vector<ChainRun> chains_for_pair(int hero_1, int hero_2,
                                          const ChainQuestion &question) const;
    std::vector<ChainRun> chains_for_pair(int hero_1, int hero_2, double btype,
                                          std::optional<double> from, std::optional<double> to,
                                          std::optional<double> player) const;
    /// The same chains without their rounds, for a fraction of the time.
    std::vector<ChainHead> chain_heads_for_pair(int hero_1, int hero_2,
                                                const ChainQuestion &question) const;
    /// The rounds of a chain in their order, with the items' facts.
    std::vector<ChainRound> rounds_of(const QString &file_name) const;
    std::optional<FortOfChain> fort_of_chain(const QString &file_name) const;
    std::vector<PlayerRow> players() const; ///< the account with the most chains first
    /// Honor of the rounds with loot whose mail is younger.
    int honor_since(double since) const;
    int chain_file_count() const;
    int report_count(std::optional<double> btype) const;

    // Field fights. `from` is included, `to` is not. `mode`: 0 field fights, 1 rallies, 2 garrison
    // actions, 3 favourites, else all.

    /// Maps from column name to value without the heroes' details, the newest mail first.
    QVariantList field_attacks(std::optional<double> from, std::optional<double> to,
                               std::optional<double> player, int limit, int mode) const;
    FieldSummary field_summary(std::optional<double> from, std::optional<double> to,
                               std::optional<double> player, int mode) const;
    /// All columns of one attack; without an id of the mail's first.
    std::optional<QVariantMap> field_attack(const QString &file_name,
                                            std::optional<double> attack_id) const;
    std::vector<PlayerRow> field_players() const; ///< the account with the most mails first
    int field_report_count() const;
    std::vector<EnemyCount> top_enemies(int limit) const; ///< the most frequent first

    // Boss kills and forts. `from` and `to` are included. An empty list of bosses means all.

    std::vector<TrialPlayerRow> trial_players(const QStringList &bosses, std::optional<double> from,
                                              std::optional<double> to) const;
    /// The oldest first. A kill up to `gap_minutes` after the last one belongs to its session.
    std::vector<TrialSession> trial_sessions(const QStringList &bosses, std::optional<double> from,
                                             std::optional<double> to, int gap_minutes) const;
    /// \param fights may be null; otherwise gets the number of kills (of the player, if one is
    /// given).
    std::vector<LootStat> trial_loot_stats(const QStringList &bosses, std::optional<double> from,
                                           std::optional<double> to, const QString &player,
                                           int *fights) const;
    std::vector<SessionPlayer> session_players(const QStringList &files) const;
    std::vector<PlayerKill> player_kills(const QStringList &files, const QString &player) const;
    /// The account to follow: that of the most rounds, without rounds that of the most boss kills.
    std::optional<double> keep_player() const;
    /// The player's fights against the boss of the barbarian keep, the newest first.
    std::vector<KeepKill> keep_kills(double player_id, int limit) const;
    std::optional<double> last_keep_kill(double player_id) const;
    std::optional<TrialDetail> trial_detail(const QString &file_name) const;
    std::vector<FortRow> fort_list(std::optional<double> from, std::optional<double> to,
                                   int min_level,
                                   int limit) const; ///< the newest first
    std::vector<LootStat> fort_loot_stats(std::optional<double> from, std::optional<double> to,
                                          int min_level, int *fights) const;
    /// The chain that earned the fort; nothing while none is linked or its mail is not stored.
    std::optional<FortBattle> fort_battle(const QString &file_name) const;

private:
    const platform::Clock clock_;
    const ItemLookup item_of_;
    const StoreConnection store_;
    std::atomic<bool> slices_counted_ = false; ///< against the rows, since the start
};

} // namespace tally::data
