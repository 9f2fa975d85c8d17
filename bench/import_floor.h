#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <string>
#include <variant>
#include <vector>

namespace tally::bench {

/// The least that any program must do that stores a folder of mails: it knows all rows beforehand
/// (taken from a store that has imported the folder) and only moves them and the files. Works on
/// SQLite's own interface with the journal settings of the store.
class ImportFloor {
public:
    ImportFloor(const QString &imported_store, const QString &mails);

    /// Reads each file once, copies it into a folder and inserts its rows with prepared statements,
    /// one transaction a report, into a new store in `folder`.
    void import(const QString &folder) const;

    /// Lists the mails, reads the first 32768 bytes of each and looks its name up in the four
    /// tables of the imported store in `folder`.
    void look_up_again(const QString &folder) const;

private:
    using Cell = std::variant<std::monostate, qint64, double, std::string>;
    struct Row {
        size_t table; ///< index into the list of tables
        std::vector<Cell> cells;
    };

    QString mails_;
    QMap<QByteArray, std::vector<Row>> rows_by_file_;
};

} // namespace tally::bench
