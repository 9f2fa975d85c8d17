#pragma once

#include "data/mail/field_report.h"
#include "data/store/records.h"
#include "platform/clock/clock.h"

#include <QMutex>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QThreadStorage>
#include <QVariantList>
#include <QVariantMap>

#include <array>
#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace tally::data {

class ChainSlicer;
struct BattleReport;
struct ChangeStamp;
struct FortReport;
struct LootSum;
struct SqlConditions;
struct ThreadConnection;
struct TrialReport;

/// The one gateway to the SQLite store. Every failing statement throws `std::runtime_error` with
/// the text "TallyDb fatal: %1: %2" (what was tried, what the database said).
///
/// Any thread may call any member: each thread gets a connection of its own at first use, writers
/// take `write_mutex_`, readers take nothing and see the last commit. The object outlives all who
/// use it. Times are seconds since the Unix epoch.
class TallyDb {
public:
    /// Opens nothing yet.
    explicit TallyDb(QString path, platform::Clock clock = platform::system_time);
    ~TallyDb();
    TallyDb(const TallyDb &) = delete;
    TallyDb &operator=(const TallyDb &) = delete;

    /// The calling thread's open connection.
    QSqlDatabase connection() const;

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
    StoredKinds stored_kinds(const QString &file_name) const;

    KnownMail known_mail(const QString &file_name, const platform::FileStamp &stamp) const;
    /// For `known_mail` to tell: a memory that only saves work.
    void note_examined(const std::vector<ExaminedMail> &mails);

    /// Ties each fort without a link to the chain whose start lies nearest, at most 300 seconds
    /// away; chains with a known fort round come first. \return how many forts were linked.
    int link_fort_to_chains();

    /// Makes what the statistics of chains keep added up for a store of an older version, which may
    /// take seconds; done before, it returns at once. Until then the statistics are slower, not
    /// other. To be called on a worker's thread; others can write meanwhile.
    void complete_chain_slices(const std::atomic<bool> *cancel = nullptr);

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

    // Chain statistics. `from` is included, `to` is not; both look at a chain's start, or at its
    // mail's modification time where the start is missing. Fort rounds count nowhere but in
    // `honor_since`.

    /// Which rounds all chain statistics look at: 0 all, 1 those that cost action points, 2 those
    /// that were free. Set and read without a lock.
    std::atomic<int> free_ap_mode = 0;

    /// The conditions for a table whose columns have this prefix ("r." or "").
    ChainSqlFilter chain_filter(const QString &prefix, std::optional<double> from,
                                std::optional<double> to, std::optional<double> player) const;
    ChainSummary summary(double btype, std::optional<double> from, std::optional<double> to,
                         std::optional<double> player) const;
    /// The chain with the most won rounds, among those the shortest.
    std::optional<BestChain> best_chain(double btype, std::optional<double> from,
                                        std::optional<double> to,
                                        std::optional<double> player) const;
    std::vector<LootStat> loot_stats(double btype, std::optional<double> from,
                                     std::optional<double> to, std::optional<double> player) const;
    /// Chains by the local hour of their start.
    std::array<int, 24> hourly(double btype, std::optional<double> from, std::optional<double> to,
                               std::optional<double> player) const;
    /// The pair with the most chains first.
    std::vector<HeroPair> hero_pairs(double btype, std::optional<double> from,
                                     std::optional<double> to, std::optional<double> player) const;
    /// The newest chain first, each with all its rounds.
    std::vector<ChainRun> chains_for_pair(int hero_1, int hero_2, double btype,
                                          std::optional<double> from, std::optional<double> to,
                                          std::optional<double> player) const;
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
                                   int min_level, int limit) const; ///< the newest first
    std::vector<LootStat> fort_loot_stats(std::optional<double> from, std::optional<double> to,
                                          int min_level, int *fights) const;
    /// The chain that earned the fort; nothing while none is linked or its mail is not stored.
    std::optional<FortBattle> fort_battle(const QString &file_name) const;

private:
    [[noreturn]] static void fatal(const QString &message, const QSqlError &error);
    static QSqlQuery exec_prepared(const QSqlDatabase &db, const QString &sql,
                                   const QVariantList &params = {});

    ThreadConnection &thread_connection() const;

    /// A statement that this thread keeps prepared, for texts that run again and again. It is reset
    /// when the lease ends; do not lease one text twice at a time.
    class KeptStatement {
    public:
        KeptStatement(QSqlQuery &query, QString exec_failure)
            : query_(query), exec_failure_(std::move(exec_failure))
        {}
        ~KeptStatement() { query_.finish(); }
        KeptStatement(const KeptStatement &) = delete;
        KeptStatement &operator=(const KeptStatement &) = delete;

        /// Binds all parameters by position and runs the statement.
        QSqlQuery &exec(const QVariantList &params);

    private:
        QSqlQuery &query_;
        QString exec_failure_;
    };
    /// Without texts of its own a statement fails with those of `exec_prepared`.
    KeptStatement kept(const QString &sql, const QString &prepare_failure = {},
                       const QString &exec_failure = {}) const;

    /// One write transaction: rolls back by itself unless it was committed. It takes the write lock
    /// of the file at its start, so what it reads cannot be changed by another process before it
    /// writes.
    class Transaction {
    public:
        explicit Transaction(QSqlDatabase db);
        ~Transaction();
        Transaction(const Transaction &) = delete;
        Transaction &operator=(const Transaction &) = delete;

        /// \throws std::runtime_error of the text `failure`, after a roll-back
        void commit(const QString &failure);

    private:
        QSqlDatabase db_;
        bool open_ = true;
    };

    static bool table_exists(const QSqlDatabase &db, const QString &table);
    static QSet<QString> table_columns(const QSqlDatabase &db, const QString &table);
    bool migrate_structure(const QSqlDatabase &db) const;
    static void back_up(const QSqlDatabase &db, double now);
    static void run_schema_script(const QSqlDatabase &db);
    static void add_missing_columns(const QSqlDatabase &db);
    static void create_late_indexes(const QSqlDatabase &db);
    static void backfill_fort_flags(const QSqlDatabase &db);
    /// Lets the planner know how large the tables are; a failure costs speed only.
    static void refresh_statistics(const QSqlDatabase &db);

    // Slices of chains (chain_slice.h), kept by triggers: any change of a chain's rows, by whatever
    // program, deletes its slices and notes its name in `stale_chains`.
    /// Makes their tables and triggers anew if another program has changed them.
    void look_after_slices(const QSqlDatabase &db) const;
    static bool has_slice_schema(const QSqlDatabase &db);
    static void ensure_chain_slices(const QSqlDatabase &db);
    static void mark_miscounted_chains(const QSqlDatabase &db);
    void slice_stale_chains() const;
    bool slice_next_chain() const;
    void store_slices(const ChainSlicer &slicer, int loot_rows) const;
    /// Whether the slices tell of all rounds.
    bool slices_complete() const;
    qint64 schema_version() const;

    struct UnlinkedFort {
        QString file_name;
        double event_time;
    };
    int link_forts_and_slice(const QSqlDatabase &db) const;
    static std::vector<UnlinkedFort> unlinked_forts(const QSqlDatabase &db);
    static std::optional<QString> chain_for_fort(const QSqlDatabase &db, double event_time);

    /// The result of `compute` on one state of the database, or that of the last time if nothing
    /// was written since. `question` and `params` tell all that the result depends on.
    template <typename Result>
    Result remembered(const QString &question, const QVariantList &params,
                      const std::function<Result()> &compute) const;
    ChangeStamp change_stamp() const;

    /// What statistics read: the slices, or the rounds while the slices lack some.
    struct ChainSource {
        QString table;
        QString chain; ///< what tells the chains apart
    };
    ChainSource chain_source() const;
    void classify_rounds(ChainSummary &summary, const QString &filter,
                         const QVariantList &params) const;
    void classify_slices(ChainSummary &summary, const QString &filter,
                         const QVariantList &params) const;
    std::vector<LootSum> sliced_loot_sums(const QString &filter, const QVariantList &params) const;
    std::map<int, std::vector<LootEntry>> round_loot(const QString &file_name) const;
    std::vector<ChainRound> rounds_of(const QString &file_name) const;
    std::vector<PlayerRow> player_rows(const ChainSource &source) const;
    std::vector<LootSum> loot_sums(const QString &sql, const QVariantList &params) const;
    /// Both texts have %1 in the place of their conditions. `fights`, if it is not null, gets what
    /// `count` gives on the same state of the database.
    std::vector<LootStat> remembered_loot(const QString &sql, const QString &count,
                                          const SqlConditions &conditions, int *fights) const;

    /// Keeps the statement prepared.
    bool any_row(const QString &sql, const QVariantList &params) const;
    int single_int(const QString &sql, const QVariantList &params = {}) const;

    const QString path_;
    const platform::Clock clock_;
    QMutex write_mutex_;
    mutable QThreadStorage<ThreadConnection *> connections_;
    bool slices_counted_ = false; ///< since the start
};

} // namespace tally::data
