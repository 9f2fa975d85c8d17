#include "ui/chains/round_look.h"

#include "data/master/item_facts.h"
#include "data/master/master_cache.h"
#include "data/values/numbers.h"
#include "ui/chains/encounters.h"
#include "ui/parts/format_count.h"

#include <QStringList>
#include <QTextDocument>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tally::ui {
namespace {

struct StatusLook {
    RoundStatus status;
    QLatin1StringView text;
    QLatin1StringView colour;
};

constexpr StatusLook statuses[] = {
    {RoundStatus::Destroyed, QLatin1StringView("Destroyed"), QLatin1StringView("#3aa3ff")},
    {RoundStatus::AttemptFail, QLatin1StringView("Attempt fail"), QLatin1StringView("#e67e22")},
    {RoundStatus::Victory, QLatin1StringView("Victory"), QLatin1StringView("#2ecc71")},
    {RoundStatus::Tactical, QLatin1StringView("(tactical)"), QLatin1StringView("#f39c12")},
    {RoundStatus::Escape, QLatin1StringView("Escape"), QLatin1StringView("#e74c3c")},
};

struct UnitRank {
    QLatin1StringView unit;
    int rank;
};

constexpr int last_rank = 99;
constexpr UnitRank unit_ranks[] = {
    {QLatin1StringView("crystals"), 0},     {QLatin1StringView("gems"), 1},
    {QLatin1StringView("min"), 2},          {QLatin1StringView("xp"), 3},
    {QLatin1StringView("gold"), 4},         {QLatin1StringView("food"), 4},
    {QLatin1StringView("wood"), 4},         {QLatin1StringView("stone"), 4},
    {QLatin1StringView("leather"), 5},      {QLatin1StringView("iron ore"), 5},
    {QLatin1StringView("animal bones"), 5}, {QLatin1StringView("ebony"), 5},
};

int rank_of(const data::LootEntry &item)
{
    const auto found = std::ranges::find_if(unit_ranks, [&item](const UnitRank &entry) {
        return item.unit.compare(entry.unit, Qt::CaseInsensitive) == 0;
    });
    return found == std::end(unit_ranks) ? last_rank : found->rank;
}

/// Without the fraction; numbers from mails are bounded by nothing.
qint64 whole(double value)
{
    constexpr double limit = 9e18;
    return static_cast<qint64>(std::clamp(value, -limit, limit));
}

bool has_value(const data::LootEntry &item)
{
    const double value = item.value.value_or(0.0);
    return value != 0.0 && !std::isnan(value);
}

const std::vector<data::LootEntry> &loot_of(const data::ChainRound &round, bool is_destroyed,
                                            const std::optional<data::FortOfChain> &fort)
{
    return is_destroyed && fort && !fort->loot.empty() ? fort->loot : round.loot;
}

std::optional<int> level_above_zero(const data::ChainRound &round)
{
    return round.level && *round.level > 0.0 ? data::to_int(round.level) : std::nullopt;
}

QString number_or_question_mark(std::optional<int> number)
{
    return number ? QString::number(*number) : QStringLiteral("?");
}

StyledText fort_target(const data::ChainRound &round, const std::optional<data::FortOfChain> &fort)
{
    std::optional<int> level = round.fort_level;
    if (!level)
        level = level_above_zero(round);
    if (!level && fort && fort->fort_level >= 1)
        level = fort->fort_level;
    return {QStringLiteral("🏰 Fort Lvl %1").arg(number_or_question_mark(level)),
            QStringLiteral("color: #3aa3ff; font-weight: 600;")};
}

RowTint tint_of(const data::ChainRound &round)
{
    if (round.is_fort_round)
        return RowTint::Fort;
    return round.is_free_ap ? RowTint::FreeAp : RowTint::Plain;
}

} // namespace

RoundLook round_look(int chain_number, const data::ChainRound &round, RoundFlags flags,
                     const std::optional<data::FortOfChain> &fort)
{
    return {
        .number = QStringLiteral("%1-%2").arg(chain_number).arg(qint64{round.round_no} + 1),
        .tint = tint_of(round),
        .status = status_text(status_of(round, flags)),
        .target = target_text(round, flags.is_free, fort),
        .tag = tag_text(round, flags, fort),
        .damage_taken = count_text(round.damage_taken),
        .damage_dealt = count_text(round.damage_dealt),
        .rewards = rewards_of(round, flags.is_destroyed, fort),
    };
}

RoundStatus status_of(const data::ChainRound &round, RoundFlags flags)
{
    if (round.is_fort_round)
        return flags.is_destroyed ? RoundStatus::Destroyed : RoundStatus::AttemptFail;
    if (has_loot(round))
        return RoundStatus::Victory;
    return flags.is_tactical ? RoundStatus::Tactical : RoundStatus::Escape;
}

StyledText status_text(RoundStatus status)
{
    const auto look = std::ranges::find(statuses, status, &StatusLook::status);
    return {look->text, QStringLiteral("font-weight: bold; color: %1;").arg(look->colour)};
}

StyledText target_text(const data::ChainRound &round, bool is_free,
                       const std::optional<data::FortOfChain> &fort)
{
    if (round.is_fort_round)
        return fort_target(round, fort);
    const data::BarbInfo barb = data::MasterCache::instance().barb(round.npc_type);
    const std::optional<int> level = level_above_zero(round);
    return {QStringLiteral("Lvl %1 %2")
                .arg(number_or_question_mark(level ? level : barb.level), barb.name),
            is_free ? QStringLiteral("color: #2ecc71; font-weight: 500;") : QString()};
}

StyledText tag_text(const data::ChainRound &round, RoundFlags flags,
                    const std::optional<data::FortOfChain> &fort)
{
    const auto tag = [](const QString &text, QLatin1StringView colour) -> StyledText {
        return {text, QStringLiteral("color: %1; font-weight: bold;").arg(colour)};
    };
    if (round.is_fort_round && flags.is_destroyed && fort && fort->damage_percent >= 1)
        return tag(QStringLiteral("💥 %1% dmg").arg(fort->damage_percent),
                   QLatin1StringView("#3aa3ff"));
    if (round.is_free_ap)
        return tag(QStringLiteral("🎁 Free AP"), QLatin1StringView("#4a9a5f"));
    if (flags.is_free)
        return tag(QStringLiteral("★ FREE AP"), QLatin1StringView("#DAA520"));
    if (flags.is_tactical)
        return tag(QStringLiteral("★ TACTICAL"), QLatin1StringView("#DAA520"));
    return {};
}

std::vector<data::LootEntry> rewards_of(const data::ChainRound &round, bool is_destroyed,
                                        const std::optional<data::FortOfChain> &fort)
{
    std::vector<data::LootEntry> rewards;
    for (const data::LootEntry &item : loot_of(round, is_destroyed, fort)) {
        if (has_value(item))
            rewards.push_back(item.name.isEmpty() ? data::with_item_facts(item, data::known_item)
                                                  : item);
    }
    std::ranges::stable_sort(rewards, {}, rank_of);
    return rewards;
}

size_t reward_count(const data::ChainRound &round, bool is_destroyed,
                    const std::optional<data::FortOfChain> &fort)
{
    return static_cast<size_t>(
        std::ranges::count_if(loot_of(round, is_destroyed, fort), has_value));
}

QString count_text(std::optional<double> value)
{
    return value && !std::isnan(*value) ? format_count(whole(*value)) : QString();
}

QString reward_tool_tip(const data::LootEntry &item)
{
    if (item.name.isEmpty())
        return {};
    const QString text = item.name + u'\n' + count_text(item.value);
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

QString spoken_text(const RoundLook &look)
{
    QStringList parts{QStringLiteral("Round %1").arg(look.number), look.status.text,
                      look.target.text};
    if (!look.tag.text.isEmpty())
        parts.push_back(look.tag.text);
    if (!look.damage_taken.isEmpty())
        parts.push_back(QStringLiteral("damage taken %1").arg(look.damage_taken));
    if (!look.damage_dealt.isEmpty())
        parts.push_back(QStringLiteral("damage dealt %1").arg(look.damage_dealt));
    return parts.join(QStringLiteral(", "));
}

} // namespace tally::ui
