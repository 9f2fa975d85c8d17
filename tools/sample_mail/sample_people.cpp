#include "sample_mails.h"

#include <array>

namespace tally::sample {
namespace {

constexpr std::array<QByteArrayView, 20> names = {
    "Aldric",
    "Brünhild",
    "Casimir",
    "Łukasz z Gór",
    "<b>x</b>",
    "<img src=x>",
    "Огненный Лис",
    "龙骑士",
    "さくら",
    "محارب",
    "O'Brien",
    "\"quoted\"; DROP",
    "%1 %2",
    "   spaced   ",
    "🛡️Tank🛡️",
    "a",
    "Ēriks",
    "Señor Ñu",
    "Kōan",
    "tab\there",
};

struct Alliance {
    QByteArrayView name;
    QByteArrayView tag;
};

constexpr std::array alliances = {
    Alliance{"Northern Watch", "NW01"},
    Alliance{"Żelazny Kruk", "ŻKRK"},
    Alliance{"<i>Order</i>", "<i>O"},
    Alliance{"赤い月", "赤月"},
    Alliance{"", ""},
    Alliance{"Ash & Ember", "A&E"},
};

} // namespace

Player random_player(Random &random)
{
    const Alliance &alliance = random.pick(alliances);
    const int number = random.integer(0, 399);
    QByteArray name = random.pick(names).toByteArray();
    if (number > 0) // else the bare name, so that two players can share it
        name += QByteArray::number(number);
    return {random.whole(10000000, 99999999), name, alliance.name.toByteArray(),
            alliance.tag.toByteArray()};
}

} // namespace tally::sample
