#pragma once

#include "clock/clock.h"
#include "mail/field_report.h"
#include "store/records.h"

#include <QMutex>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QThreadStorage>
#include <QVariantList>

#include <optional>
#include <vector>

namespace tally::data {

struct BattleReport;
struct FortReport;
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

    /// Ties each fort without a link to the chain whose start lies nearest, at most 300 seconds
    /// away; chains with a known fort round come first. \return how many forts were linked.
    int link_fort_to_chains();

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

    // Chain statistics.
    std::vector<PlayerRow> players() const; ///< the account with the most chains first
    int chain_file_count() const;
    int report_count(std::optional<double> btype) const;

    // Field fights.
    int field_report_count() const;

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

    struct UnlinkedFort {
        QString file_name;
        double event_time;
    };
    static std::vector<UnlinkedFort> unlinked_forts(const QSqlDatabase &db);
    static std::optional<QString> chain_for_fort(const QSqlDatabase &db, double event_time);

    /// Keeps the statement prepared.
    bool any_row(const QString &sql, const QVariantList &params) const;
    int single_int(const QString &sql, const QVariantList &params = {}) const;

    const QString path_;
    const platform::Clock clock_;
    QMutex write_mutex_;
    mutable QThreadStorage<ThreadConnection *> connections_;
};

} // namespace tally::data
