#pragma once

#include <QByteArray>

#include <memory>
#include <optional>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace tally::tools {

/// SQLite's own interface, for rows by the million. Every failure throws std::runtime_error.
class SqliteWriter {
public:
    explicit SqliteWriter(const QByteArray &path);
    void exec(const QByteArray &sql);

    class Insert {
    public:
        /// \param columns comma-separated
        Insert(SqliteWriter &writer, const QByteArray &table, const QByteArray &columns);

        /// Stores one row: numbers, texts and optional ones of these.
        template <typename... Values>
        void operator()(const Values &...values)
        {
            column_ = 0;
            (bind(values), ...);
            step();
        }

    private:
        struct Finalize {
            void operator()(sqlite3_stmt *statement) const;
        };
        void bind(double value);
        void bind(int value);
        void bind(const std::string &text);
        template <typename Value>
        void bind(const std::optional<Value> &value)
        {
            if (value)
                bind(*value);
            else
                ++column_; // stays NULL
        }
        void step();

        sqlite3 *db_;
        std::unique_ptr<sqlite3_stmt, Finalize> statement_;
        int column_ = 0;
    };

private:
    struct Close {
        void operator()(sqlite3 *db) const;
    };
    std::unique_ptr<sqlite3, Close> db_;
};

} // namespace tally::tools
