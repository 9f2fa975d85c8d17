#include "ui/parts/player_entries.h"

#include "data/store/sql_values.h"

#include <QSet>

#include <algorithm>

namespace tally::ui {

std::vector<PlayerEntry> player_entries(const std::vector<data::PlayerRow> &accounts)
{
    std::vector<PlayerEntry> entries = {{QStringLiteral("All players"), std::nullopt}};
    QSet<QString> taken = {entries.front().text};
    for (const auto &[player_id, name, chains] : accounts) {
        const QString id = QString::number(data::saturated<qint64>(player_id.value_or(0.0)));
        QString text = name.isEmpty() ? QStringLiteral("ID %1").arg(id) : name;
        while (taken.contains(text))
            text = QStringLiteral("%1 (%2)").arg(text, id);
        taken.insert(text);
        entries.push_back({text, player_id});
    }
    return entries;
}

std::size_t chosen_player(const std::vector<PlayerEntry> &entries, const PlayerEntry &chosen)
{
    const auto index_where = [&entries](const auto &is_it) -> std::optional<std::size_t> {
        const auto found = std::find_if(entries.begin(), entries.end(), is_it);
        if (found == entries.end())
            return std::nullopt;
        return static_cast<std::size_t>(found - entries.begin());
    };
    const auto by_text =
        index_where([&chosen](const PlayerEntry &entry) { return entry.text == chosen.text; });
    if (!by_text)
        return entries.size() > 1 ? 1 : 0;
    // The id in brackets is gone to the other of two once he has more chains.
    const auto by_id =
        index_where([&chosen](const PlayerEntry &entry) { return entry.id == chosen.id; });
    return by_id.value_or(*by_text);
}

} // namespace tally::ui
