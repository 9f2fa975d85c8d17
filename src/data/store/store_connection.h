#pragma once

#include "data/store/result_cache.h"
#include "data/store/store_file.h"

#include <QMutex>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QThreadStorage>
#include <QVariantList>

#include <optional>
#include <unordered_map>

namespace tally::data {

/// One SQLite file, with a connection for each thread that asks. All that the store does with the
/// file goes through here: a statement that fails throws `std::runtime_error` with the text
/// "TallyDb fatal: %1: %2" (what was tried, what the database said).
///
/// Writers hold `write_mutex()`; readers take nothing and see the last commit.
class StoreConnection {
public:
    /// Opens nothing yet.
    explicit StoreConnection(QString path);
    ~StoreConnection();
    StoreConnection(const StoreConnection &) = delete;
    StoreConnection &operator=(const StoreConnection &) = delete;

    [[noreturn]] static void fatal(const QString &message, const QSqlError &error);
    static QSqlQuery exec_prepared(const QSqlDatabase &db, const QString &sql,
                                   const QVariantList &params = {});

    /// The calling thread's open connection.
    QSqlDatabase connection() const { return thread_connection().db; }
    const StoreFile &file() const { return file_; }
    QMutex &write_mutex() const { return write_mutex_; }

    /// Runs a statement on the calling thread's connection.
    QSqlQuery exec(const QString &sql, const QVariantList &params = {}) const
    {
        return exec_prepared(connection(), sql, params);
    }

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

    /// Whether the statement, which is kept prepared, gives a row.
    bool any_row(const QString &sql, const QVariantList &params = {}) const;
    /// The first value of the first row, 0 if there is none.
    int single_int(const QString &sql, const QVariantList &params = {}) const;
    bool table_exists(const QString &table) const;
    QSet<QString> table_columns(const QString &table) const;

    /// What the calling thread remembers of this store.
    ResultCache &results() const { return thread_connection().results; }
    /// By `result_key`.
    QCache<QString, RunningResult> &running() const { return thread_connection().running; }
    /// The version of the schema whose derived tables the calling thread found to be right.
    std::optional<qint64> &derived_schema() const { return thread_connection().derived_schema; }
    /// The state for which the calling thread's connection has slices of its own.
    std::optional<ChangeStamp> &own_slices() const { return thread_connection().own_slices; }

private:
    static constexpr qsizetype max_running = 64;

    /// Used by its thread alone and freed when that ends.
    struct ThreadConnection {
        QString name; ///< in Qt's registry of connections
        QSqlDatabase db;
        std::unordered_map<QString, QSqlQuery> kept = {}; ///< prepared statements by their text
        ResultCache results = {};
        QCache<QString, RunningResult> running{max_running};
        std::optional<qint64> derived_schema = {};
        std::optional<ChangeStamp> own_slices = {};
    };

    ThreadConnection &thread_connection() const;

    mutable StoreFile file_;
    mutable QMutex write_mutex_;
    mutable QThreadStorage<ThreadConnection *> connections_;
};

/// One write transaction: rolls back by itself unless it was committed. It takes the write lock of
/// the file at its start, so what it reads cannot be changed by another process before it writes.
class Transaction {
public:
    explicit Transaction(const QSqlDatabase &db);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    /// \throws std::runtime_error of the text `failure`, after a roll-back
    void commit(const QString &failure);

private:
    QSqlDatabase db_;
    bool open_ = true;
};

/// While it lives, all queries of the connection see one state of the database.
class ReadSnapshot {
public:
    explicit ReadSnapshot(const StoreConnection &store)
        : db_(store.connection()), open_(db_.transaction())
    {}
    ~ReadSnapshot()
    {
        if (open_)
            db_.commit();
    }
    ReadSnapshot(const ReadSnapshot &) = delete;
    ReadSnapshot &operator=(const ReadSnapshot &) = delete;

    /// False inside a transaction that somebody else began, whose changes may still be undone.
    bool is_of_commits() const { return open_; }

private:
    QSqlDatabase db_;
    bool open_;
};

} // namespace tally::data
