#include "honor/honor_roll.h"

#include <QtEndian>

#include <algorithm>
#include <unordered_set>

namespace tally::honor {

namespace {

constexpr int shortest_name = 3;
constexpr int longest_name = 30;
constexpr int lowest_kingdom = 100;
constexpr int highest_kingdom = 9'999;

/// The next place from `from` on where a record may begin; -1 if there is none. A tag counts only
/// where more than 32 bytes follow.
qsizetype next_tag(QByteArrayView buffer, qsizetype from)
{
    const qsizetype tag = buffer.indexOf(record_tag, from);
    return tag + honor_before_tag < buffer.size() ? tag : -1;
}

std::optional<std::int64_t> entry_honor(QByteArrayView buffer, qsizetype tag)
{
    if (tag < honor_before_tag)
        return std::nullopt;
    const auto value = qFromLittleEndian<quint64>(buffer.data() + (tag - honor_before_tag));
    if (value > quint64{plausible_entry_honor.high})
        return std::nullopt;
    const auto honor = static_cast<std::int64_t>(value);
    return plausible_entry_honor.holds(honor) ? std::optional{honor} : std::nullopt;
}

/// The smallest plausible number before the record: neither its place nor its width is known.
std::optional<int> entry_kingdom(QByteArrayView buffer, qsizetype tag)
{
    std::optional<int> kingdom;
    const auto consider = [&](qint64 value) {
        if (value >= lowest_kingdom && value <= highest_kingdom)
            kingdom = std::min(kingdom.value_or(highest_kingdom), static_cast<int>(value));
    };
    for (qsizetype at = std::max<qsizetype>(tag - kingdom_reach, 0); at + 8 < tag; at += 4) {
        consider(qFromLittleEndian<qint64>(buffer.data() + at));
        consider(qFromLittleEndian<qint32>(buffer.data() + at));
    }
    return kingdom;
}

bool all_zero(QByteArrayView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == 0; });
}

} // namespace

bool valid_name(const QString &name)
{
    return name.size() >= shortest_name && std::all_of(name.begin(), name.end(), [](QChar unit) {
               const char16_t code = unit.unicode();
               const bool control = code < 32 && code != u'\t';
               return !control && !(code >= 0xD800 && code <= 0xF8FF);
           });
}

QString record_name_at(QByteArrayView buffer, qsizetype tag)
{
    if (buffer[tag] != record_tag || tag + name_behind_tag > buffer.size())
        return {};
    const int length = static_cast<unsigned char>(buffer[tag + 1]);
    if (length < shortest_name || length > longest_name ||
        tag + name_behind_tag + length > buffer.size())
        return {};
    const QString name = QString::fromUtf8(buffer.sliced(tag + name_behind_tag, length));
    return name.contains(QChar::ReplacementCharacter) || !valid_name(name) ? QString{} : name;
}

int count_records(QByteArrayView buffer)
{
    int records = 0;
    for (qsizetype tag = next_tag(buffer, 0); tag >= 0; tag = next_tag(buffer, tag + 1))
        records += record_name_at(buffer, tag).isEmpty() ? 0 : 1;
    return records;
}

std::optional<std::int64_t> largest_honor_of(QByteArrayView buffer, const QString &name,
                                             HonorRange range)
{
    const QByteArray wanted = name.toUtf8();
    if (wanted.isEmpty() || wanted.size() > longest_own_name)
        return std::nullopt;
    std::optional<std::int64_t> largest;
    for (qsizetype at = buffer.indexOf(wanted); at >= 0; at = buffer.indexOf(wanted, at + 1)) {
        if (at < honor_before_name || buffer[at - name_behind_tag] != record_tag ||
            static_cast<unsigned char>(buffer[at - 1]) != wanted.size())
            continue;
        const auto honor = qFromLittleEndian<qint64>(buffer.data() + (at - honor_before_name));
        if (range.holds(honor))
            largest = std::max(largest.value_or(honor), std::int64_t{honor});
    }
    return largest;
}

std::vector<LeaderboardEntry> parse_entries(QByteArrayView buffer, std::uint64_t base_address)
{
    std::vector<LeaderboardEntry> entries;
    qsizetype tag = next_tag(buffer, 0);
    while (tag >= 0) {
        const QString name = record_name_at(buffer, tag);
        if (name.isEmpty()) {
            tag = next_tag(buffer, tag + 1);
            continue;
        }
        const qsizetype name_at = tag + name_behind_tag;
        entries.push_back({base_address + static_cast<std::uint64_t>(name_at), name,
                           entry_honor(buffer, tag), std::nullopt, entry_kingdom(buffer, tag)});
        tag = next_tag(buffer, name_at + static_cast<unsigned char>(buffer[tag + 1]));
    }
    return entries;
}

std::vector<LeaderboardEntry> ranked_roll(std::vector<LeaderboardEntry> entries)
{
    std::unordered_set<QString> names;
    const auto repeated = [&](const LeaderboardEntry &entry) {
        return !names.insert(entry.name).second;
    };
    std::erase_if(entries, repeated);
    std::stable_sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) {
        return a.honor.value_or(0) > b.honor.value_or(0);
    });
    int rank = 0;
    for (LeaderboardEntry &entry : entries)
        entry.rank = ++rank;
    return entries;
}

QByteArrayView without_zero_tail(QByteArrayView buffer)
{
    constexpr qsizetype block = 4096;
    while (buffer.size() >= block && all_zero(buffer.last(block)))
        buffer.chop(block);
    return buffer;
}

} // namespace tally::honor
