#include "support/store_dump.h"

#include "data/store/tally_db.h"
#include "support/plain_connection.h"

#include <QStringList>

namespace tally::test {

namespace {

struct DumpedTable {
    const char *name;
    const char *from;
    const char *parent_columns; ///< quoted ones in front of the table's own
    const char *order;
};

constexpr DumpedTable dumped_tables[] = {
    {"reports", "reports t", "", "t.file_name, t.round_no"},
    {"loot", "loot t", "", "t.file_name, t.round_no, t.id"},
    {"field_reports", "field_reports t", "", "t.file_name, t.attack_id"},
    {"trial_reports", "trial_reports t", "", "t.file_name"},
    {"trial_participants", "trial_participants t", "", "t.file_name, t.id"},
    {"trial_loot", "trial_loot t LEFT JOIN trial_participants p ON p.id = t.participant_id",
     "quote(p.file_name), quote(p.order_), quote(p.player_id), quote(p.player_name), ",
     "p.file_name, p.id, t.id"},
    {"fort_reports", "fort_reports t", "", "t.file_name"},
    {"fort_loot", "fort_loot t", "", "t.file_name, t.id"},
};

QString dump(const QSqlDatabase &db)
{
    QString text;
    for (const auto &[name, from, parent_columns, order] : dumped_tables) {
        QStringList columns;
        for (const QStringList &column :
             rows_of(db, QStringLiteral("PRAGMA table_info(%1)").arg(QLatin1StringView(name)))) {
            if (column.at(1) != u"id" && column.at(1) != u"participant_id" &&
                column.at(1) != u"imported_at")
                columns << QStringLiteral("quote(t.%1)").arg(column.at(1));
        }
        text += QStringLiteral("[%1]\n").arg(QLatin1StringView(name));
        text += text_of(db, QStringLiteral("SELECT %1%2 FROM %3 ORDER BY %4")
                                .arg(QLatin1StringView(parent_columns), columns.join(u", "),
                                     QLatin1StringView(from), QLatin1StringView(order)));
        text += u'\n';
    }
    return text;
}

} // namespace

QString store_dump(const QString &path)
{
    return dump(PlainConnection(path).db());
}

QString store_dump(const data::TallyDb &db)
{
    return dump(db.connection());
}

} // namespace tally::test
