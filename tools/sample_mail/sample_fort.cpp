#include "mail_parts.h"

namespace tally::sample {

QByteArray fort_mail(Random &random, const FortReward &reward)
{
    const QByteArray level = QByteArray::number(reward.level);
    const QByteArray body = map(
        {text_entry("title", "Barbarian Fort Destroyed"),
         text_entry("targetName", "Level " + level + " Barbarian Fort"),
         text_entry("content", "The rally destroyed the fort. Your troops dealt " +
                                   QByteArray::number(reward.damage_percent) +
                                   " % of the damage. " + prose(random, random.integer(100, 400))),
         entry("position",
               map({entry_of("X", random.whole(0, 7200)), entry_of("Y", random.whole(0, 7200))})),
         entry("joined", roster(random, random.integer(8, 24)))});
    const QByteArray attachments = array({map(
        {entry("loot", loot(random, random.integer(3, 9))), entry("claimed", small_value(1))})});
    return finish_mail(random, head_entries(random, reward.head, "System") + entry("body", body) +
                                   entry("attachments", attachments));
}

QByteArray sample_fort_mail(quint32 seed)
{
    Random random(seed);
    const MailHead head = random_head(random);
    return fort_mail(random, {head, random.integer(1, 15), random.integer(1, 100)});
}

} // namespace tally::sample
