#include "ui/field/hero_names.h"

#include "data/master/master_cache.h"
#include "data/store/sql_values.h"

namespace tally::ui {
namespace {

QString name_now(double id)
{
    return data::MasterCache::instance().hero_name(id);
}

} // namespace

QString HeroNames::of(const QVariant &id)
{
    const double hero = data::number_or_zero(id);
    if (hero == 0.0)
        return {};
    const auto known = names_.constFind(hero);
    return known != names_.cend() ? *known : *names_.insert(hero, name_now(hero));
}

bool HeroNames::still_hold() const
{
    for (auto hero = names_.cbegin(); hero != names_.cend(); ++hero) {
        if (name_now(hero.key()) != hero.value())
            return false;
    }
    return true;
}

} // namespace tally::ui
