#include "data/mail/battle_rounds.h"

#include "data/mail/key_marker.h"
#include "data/mail/mail_value.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <span>

namespace tally::data {
namespace {

constexpr double ets_limit = 10'000'000.0; // "Ets" is also the key of times in seconds

void check_bound(size_t count, size_t max_count, const char *what)
{
    if (count > max_count)
        throw OversizedMail(
            QStringLiteral("more than %1 %2").arg(max_count).arg(QLatin1StringView(what)));
}

/// The stretch of a mail in which a key is looked for.
struct Block {
    qsizetype begin = 0;
    qsizetype end = 0;
};

/// All places of one key in a mail, found once and then asked block by block.
class KeyPlaces {
public:
    KeyPlaces(QByteArrayView mail, QByteArrayView key)
        : mail_(mail), marker_(key_marker(key)), offsets_(find_all_offsets(mail, marker_))
    {}

    std::span<const qsizetype> all() const { return offsets_; }

    std::span<const qsizetype> inside(Block block) const
    {
        const auto begin = std::lower_bound(offsets_.begin(), offsets_.end(), block.begin);
        const auto end = std::lower_bound(begin, offsets_.end(), block.end - marker_.size() + 1);
        return {begin, end};
    }

    qsizetype value_pos(qsizetype offset) const { return offset + marker_.size(); }
    std::optional<double> number(qsizetype offset) const
    {
        return double_at(mail_, value_pos(offset));
    }

    /// What stands behind the block's first marker, even if a later one has a number.
    std::optional<double> first_number(Block block) const
    {
        const auto found = inside(block);
        return found.empty() ? std::nullopt : number(found.front());
    }

private:
    QByteArrayView mail_;
    QByteArray marker_;
    std::vector<qsizetype> offsets_;
};

class RoundReader {
public:
    explicit RoundReader(QByteArrayView mail)
        : mail_(mail), anchors_(mail, "NpcType"), btypes_(mail, "NpcBType"),
          castle_levels_(mail, "CastleLevel"), kill_loots_(mail, "NpcKillLoot"),
          disappear_ticks_(mail, "DisappearTick"), ets_(mail, "Ets"), forts_(mail, "IsFort"),
          ct_ids_(mail, "CtId"), hurts_(mail, "Hurt"), deaths_(mail, "Death")
    {}

    std::vector<BattleRound> rounds() const
    {
        std::vector<BattleRound> rounds;
        size_t loot_count = 0;
        qsizetype lead_in = 0;
        const auto anchors = anchors_.all();
        for (size_t i = 0; i < anchors.size(); ++i) {
            const qsizetype anchor = anchors[i];
            const qsizetype end = i + 1 < anchors.size() ? anchors[i + 1] : mail_.size();
            if (const auto npc_type = anchors_.number(anchor)) {
                BattleRound round = round_in({anchors_.value_pos(anchor), end});
                loot_count += round.loot.size();
                check_bound(rounds.size() + 1, max_rounds, "rounds");
                check_bound(loot_count, max_loot_of_mail, "loot entries");
                round.npc_type = npc_type;
                add_damage(round, {lead_in, anchor});
                rounds.push_back(std::move(round));
            }
            lead_in = anchor;
        }
        return rounds;
    }

private:
    BattleRound round_in(Block block) const
    {
        BattleRound round;
        round.npc_btype = btypes_.first_number(block);
        if (const auto level = castle_levels_.first_number(block); level > 0.0)
            round.level = level;
        round.is_fort_round = forts_.inside(block).empty() ? 0 : 1;
        round.npc_ctid = ct_ids_.first_number(block);
        round.disappear_tick = disappear_ticks_.first_number(block);
        for (const qsizetype offset : ets_.inside(block)) {
            if (const auto ets = ets_.number(offset); ets && *ets < ets_limit) {
                round.ets = ets;
                break;
            }
        }
        if (const auto loot = kill_loots_.inside(block); !loot.empty())
            round.loot = read_loot(mail_, kill_loots_.value_pos(loot.front()));
        return round;
    }

    /// Damage stands in front of the fight that it belongs to; of two "Hurt" numbers the second is
    /// the damage taken.
    void add_damage(BattleRound &round, Block lead_in) const
    {
        int hurt_count = 0;
        for (const qsizetype offset : hurts_.inside(lead_in)) {
            const auto hurt = hurts_.number(offset);
            if (!hurt)
                continue;
            round.damage_taken = hurt;
            if (++hurt_count == 2)
                break;
        }
        for (const qsizetype offset : deaths_.inside(lead_in)) {
            if (const auto death = deaths_.number(offset)) {
                round.damage_dealt = death;
                break;
            }
        }
    }

    QByteArrayView mail_;
    KeyPlaces anchors_;
    KeyPlaces btypes_;
    KeyPlaces castle_levels_;
    KeyPlaces kill_loots_;
    KeyPlaces disappear_ticks_;
    KeyPlaces ets_;
    KeyPlaces forts_;
    KeyPlaces ct_ids_;
    KeyPlaces hurts_;
    KeyPlaces deaths_;
};

/// An absent number sorts as 0, and so does one that is no number, which no order can hold.
double sort_number(std::optional<double> value)
{
    return value && !std::isnan(*value) ? *value : 0.0;
}

bool sorts_before(const BattleRound &a, const BattleRound &b)
{
    const double a_ets = sort_number(a.ets);
    const double b_ets = sort_number(b.ets);
    if (a_ets != b_ets)
        return a_ets > b_ets;
    return sort_number(a.disappear_tick) < sort_number(b.disappear_tick);
}

/// Reads one item's pairs of text key and number. \return nothing if one of them breaks off.
std::optional<LootEntry> read_loot_entry(QByteArrayView bytes, qsizetype &pos)
{
    LootEntry entry;
    for (size_t pairs = 1; pos < bytes.size() && bytes[pos] == '\x04'; ++pairs) {
        check_bound(pairs, max_pairs_of_loot, "numbers in a loot entry");
        const auto key = text_at(bytes, pos, std::numeric_limits<quint32>::max());
        if (!key)
            return std::nullopt;
        pos += 5 + key->size();
        const auto number = double_at(bytes, pos);
        if (!number)
            return std::nullopt;
        pos += 9;
        if (*key == "Value")
            entry.value = number;
        else if (*key == "Type")
            entry.item_type = number;
        else if (*key == "SubType")
            entry.item_subtype = number;
    }
    return entry;
}

} // namespace

std::vector<LootEntry> read_loot(QByteArrayView bytes, qsizetype pos)
{
    std::vector<LootEntry> loot;
    if (pos < 0 || pos >= bytes.size() || bytes[pos] != '\x05')
        return loot;
    ++pos;
    while (double_at(bytes, pos) && pos + 9 < bytes.size() && bytes[pos + 9] == '\x05') {
        pos += 10;
        const auto entry = read_loot_entry(bytes, pos);
        if (!entry)
            return loot;
        check_bound(loot.size() + 1, max_loot_of_round, "loot entries in a round");
        loot.push_back(*entry);
        ++pos; // the entry's end
    }
    return loot;
}

std::vector<BattleRound> read_battle_rounds(QByteArrayView mail)
{
    std::vector<BattleRound> rounds = RoundReader(mail).rounds();
    std::stable_sort(rounds.begin(), rounds.end(), sorts_before);
    return rounds;
}

} // namespace tally::data
