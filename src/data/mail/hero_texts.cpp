#include "data/mail/hero_texts.h"

#include "data/mail/mail_value.h"
#include "data/mail/tree_reading.h"

#include <QMap>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tally::data {
namespace {

const QString separator = QStringLiteral("; ");

/// Adds the strengths of one slot, "1204_0.125;31_0.03", to the sums by buff. A part that is not an
/// id, "_" and a number adds nothing.
void add_buffs(QMap<QString, double> &strength_by_buff, const QString &buffs)
{
    for (const QStringView part : QStringView(buffs).tokenize(u';')) {
        const qsizetype underscore = part.indexOf(u'_');
        if (underscore < 0)
            continue;
        bool is_id = false;
        bool is_strength = false;
        const int id = part.first(underscore).toInt(&is_id);
        const double strength = part.sliced(underscore + 1).toDouble(&is_strength);
        if (is_id && is_strength)
            strength_by_buff[QStringLiteral("buff%1").arg(id)] += strength;
        if (strength_by_buff.size() > max_buffs_of_hero)
            throw OversizedMail(
                QStringLiteral("more than %1 buffs of a hero").arg(max_buffs_of_hero));
    }
}

QString percent_text(double percent)
{
    if (!std::isfinite(percent) || std::abs(percent) < 1e15)
        return QString::number(percent, 'f', 1);
    // Qt takes a thousand times as long for numbers of hundreds of digits.
    std::array<char, 400> digits;
    const auto end =
        std::to_chars(digits.begin(), digits.end(), percent, std::chars_format::fixed, 1).ptr;
    return QString::fromLatin1(digits.data(), end - digits.data());
}

/// Slot numbers in their order, before slots whose keys are no numbers in the order of their texts.
bool slot_before(const QString &a, const QString &b)
{
    bool a_is_number = false;
    bool b_is_number = false;
    const int a_number = a.toInt(&a_is_number);
    const int b_number = b.toInt(&b_is_number);
    if (a_is_number && b_is_number)
        return a_number < b_number;
    // Comparing a number with a text as texts would give an order that runs in circles.
    if (a_is_number != b_is_number)
        return a_is_number;
    return a < b;
}

} // namespace

QString format_skills(const QVariant &slots_by_key)
{
    const QVariantMap slots_map = slots_by_key.toMap();
    QStringList skills;
    for (const QString &key : keys_by_number(slots_map)) {
        const QVariantMap slot = slots_map.value(key).toMap();
        const QVariant id = value_of(slot, u"SkillId");
        const QVariant level = value_of(slot, u"SkillLevel");
        if (id.isValid() && level.isValid())
            skills += QStringLiteral("#%1 L%2")
                          .arg(int_of(id).value_or(0))
                          .arg(int_of(level).value_or(0));
    }
    return skills.join(separator);
}

QString format_buffs(const QVariant &slots_by_key)
{
    QMap<QString, double> strength_by_buff;
    const QVariantMap slots_map = slots_by_key.toMap();
    for (const QVariant &slot : slots_map)
        add_buffs(strength_by_buff, text_of(slot.toMap(), u"Buffs"));
    QStringList buffs;
    for (auto it = strength_by_buff.cbegin(); it != strength_by_buff.cend(); ++it)
        buffs += QStringLiteral("%1: %2%").arg(it.key(), percent_text(it.value() * 100));
    return buffs.join(separator);
}

QString format_inscriptions(const QVariant &slots_by_key)
{
    const QVariantMap slots_map = slots_by_key.toMap();
    QStringList keys = slots_map.keys();
    std::stable_sort(keys.begin(), keys.end(), slot_before);
    QStringList inscriptions;
    for (const QString &key : keys) {
        const QString affix = text_of(slots_map.value(key).toMap(), u"Affix");
        if (!affix.isEmpty())
            inscriptions += QStringLiteral("S%1:#%2").arg(key, affix);
    }
    return inscriptions.join(separator);
}

} // namespace tally::data
