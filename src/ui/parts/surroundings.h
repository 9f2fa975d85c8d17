#pragma once

#include "platform/clock/clock.h"
#include "platform/endpoint/endpoint.h"
#include "platform/paths/data_folders.h"

#include <QString>

namespace tally {

class Settings;

namespace data {
class TallyDb;
}
namespace platform {
class Host;
}
namespace queries {
class StoreQueries;
}

} // namespace tally

namespace tally::ui {

/// What the program's windows stand in and never reach for by themselves. Made where the program
/// starts and handed down; what it refers to outlives them all.
struct Surroundings {
    data::TallyDb &db;
    queries::StoreQueries &queries;
    Settings &settings;
    platform::Host &host; ///< windows and processes
    platform::Clock clock = platform::system_time;
    platform::Endpoint endpoint = platform::shipped_endpoint();
    QString icon_dir = platform::icon_cache_dir();
    QString raw_dir = platform::raw_dir(); ///< where imports keep their copies of mails
};

} // namespace tally::ui
