#pragma once

#include "data/store/tally_db.h"
#include "support/print_qt.h"

#include <QTemporaryDir>

#include <exception>
#include <string>
#include <utility>

namespace tally::test {

/// A store in a folder of its own that vanishes with it. Its clock shows `now`.
struct TempStore {
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("tally.db"));
    double now = 5000.25;
    data::TallyDb db{path, [this] {
                         return now;
                     }};

    TempStore() { db.init_schema(); }
    TempStore(const TempStore &) = delete;
    TempStore &operator=(const TempStore &) = delete;
};

/// The text of the exception that `action` throws, or "" if it throws none.
template <typename Action>
std::string failure_of(Action &&action)
{
    try {
        std::forward<Action>(action)();
    } catch (const std::exception &exception) {
        return exception.what();
    }
    return {};
}

} // namespace tally::test
