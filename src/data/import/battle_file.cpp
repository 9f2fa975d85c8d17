#include "data/import/battle_file.h"

#include "data/mail/refusal.h"
#include "data/master/master_cache.h"

namespace tally::data {

std::optional<int> known_level(double npc_type)
{
    return MasterCache::instance().barb(npc_type).level;
}

std::optional<BattleReport> parse_battle(const QString &path)
{
    return report_in_file(path,
                          [](QByteArrayView mail) { return parse_battle(mail, known_level); });
}

} // namespace tally::data
