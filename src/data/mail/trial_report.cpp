#include "data/mail/trial_report.h"

#include "data/mail/mail_value.h"
#include "data/mail/refusal.h"
#include "data/mail/tree_reading.h"

namespace tally::data {
namespace {

std::vector<TrialParticipant> participants_of(const QVariantMap &infos)
{
    std::vector<TrialParticipant> participants;
    for (const QVariant &info : infos) {
        const QVariantMap fields = info.toMap();
        if (fields.isEmpty())
            continue;
        TrialParticipant &participant = participants.emplace_back();
        participant.player_id = convertible_number(value_of(fields, u"playerId"));
        participant.player_name = text_of(fields, u"name");
        participant.damage_rate = value_of(fields, u"damageRate").toDouble();
        participant.order_ = to_int(value_of(fields, u"order").toDouble()).value_or(0);
        append_loot(participant.loot, map_of(fields, u"loots"));
    }
    return participants;
}

std::optional<TrialReport> trial_of(const QVariantMap &root)
{
    if (text_of(root, u"type") != u"BarCanyonKillBoss")
        return std::nullopt;
    const QVariantMap content = map_of(map_of(root, u"body"), u"content");

    TrialReport report;
    report.participants = participants_of(map_of(content, u"infos"));
    if (report.participants.empty())
        return std::nullopt;
    report.mail_id = text_of(root, u"id");
    report.boss_name = text_of(content, u"eliteBarName");
    report.npc_type = convertible_number(value_of(content, u"npcType"));
    report.npc_level = convertible_number(value_of(content, u"npcLevel"));
    if (const QVariantMap pos = map_of(content, u"pos"); !pos.isEmpty()) {
        report.tile_x = tile_of(value_of(pos, u"x").toDouble());
        report.tile_y = tile_of(value_of(pos, u"y").toDouble());
    }
    report.event_time = event_time_of(root);
    return report;
}

} // namespace

std::optional<TrialReport> parse_trial(QByteArrayView mail)
{
    return unless_damaged([&] { return trial_of(parse_bytes(mail)); });
}

std::optional<TrialReport> parse_trial(const QString &path)
{
    return report_in_file(path, [](QByteArrayView mail) { return parse_trial(mail); });
}

} // namespace tally::data
