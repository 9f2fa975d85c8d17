#include "data/mail/fort_report.h"

#include "data/mail/mail_value.h"
#include "data/mail/refusal.h"
#include "data/mail/tree_reading.h"

#include <QRegularExpression>

namespace tally::data {
namespace {

/// The number that the pattern captures in a text, 0 where it does not match.
qint32 captured_number(const QRegularExpression &pattern, const QString &text)
{
    return pattern.match(text).captured(1).toInt();
}

std::vector<LootEntry> loot_of_attachments(const QVariantMap &attachments)
{
    std::vector<LootEntry> loot;
    for (const QVariant &attachment : attachments)
        append_loot(loot, map_of(attachment.toMap(), u"loot"));
    return loot;
}

std::optional<FortReport> fort_of(const QVariantMap &root)
{
    static const QRegularExpression level_pattern(QStringLiteral("Level\\s*(\\d+)"),
                                                  QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression percent_pattern(QStringLiteral("dealt\\s+(\\d+)\\s*%"),
                                                    QRegularExpression::CaseInsensitiveOption);

    if (text_of(root, u"type") != u"System")
        return std::nullopt;
    const QVariantMap body = map_of(root, u"body");
    if (!text_of(body, u"title").startsWith(u"Barbarian Fort", Qt::CaseInsensitive))
        return std::nullopt;

    FortReport report;
    report.loot = loot_of_attachments(map_of(root, u"attachments"));
    if (report.loot.empty())
        return std::nullopt;
    report.mail_id = text_of(root, u"id");
    report.fort_level = captured_number(level_pattern, text_of(body, u"targetName"));
    if (const QVariantMap position = map_of(body, u"position"); !position.isEmpty()) {
        report.tile_x = tile_of(value_of(position, u"X").toDouble());
        report.tile_y = tile_of(value_of(position, u"Y").toDouble());
    }
    report.damage_percent = captured_number(percent_pattern, text_of(body, u"content"));
    report.event_time = event_time_of(root);
    return report;
}

} // namespace

std::optional<FortReport> parse_fort(QByteArrayView mail)
{
    return unless_damaged([&] { return fort_of(parse_bytes(mail)); });
}

std::optional<FortReport> parse_fort(const QString &path)
{
    return report_in_file(path, [](QByteArrayView mail) { return parse_fort(mail); });
}

} // namespace tally::data
