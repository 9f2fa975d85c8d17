#include "data/mail/battle_report.h"

// Must not link: the floor below does not have the extractors.
int main()
{
    return tally::data::parse_battle(QByteArrayView(), {}).has_value();
}
