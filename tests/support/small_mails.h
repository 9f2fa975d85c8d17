#pragma once

#include "mail_encoder.h"

namespace tally::test {

/// The smallest mail that is a report: a fort with one item.
inline QByteArray fort_mail(double event_time = 1.7e9)
{
    using namespace sample;
    const QByteArray loot = array(
        {map({entry("Type", number(4)), entry("SubType", number(1)), entry("Value", number(30))})});
    return mail(entry("type", text("System")) + entry("time", number(event_time * 1e6)) +
                entry("body", map({entry("title", text("Barbarian Fort destroyed"))})) +
                entry("attachments", array({map({entry("loot", loot)})})));
}

} // namespace tally::test
