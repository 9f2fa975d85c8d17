#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace tally::reference {

/// Something that goes wrong on purpose with every request whose path begins with `path`.
struct Fault {
    enum class Kind {
        Slow,     ///< answers after `number` milliseconds
        Silent,   ///< never answers
        Status,   ///< answers with the status `number` and a JSON body
        Cut,      ///< ends the connection in the middle of the body
        Redirect, ///< points to `target`
        Short,    ///< sends half of the body and says that it is all
        Garbled,  ///< sends as many other bytes
        Endless,  ///< never comes to the end of the body
    };
    Kind kind = Kind::Silent;
    QString path;
    int number = 0;
    QString target;
};

/// Reads "slow=3000", "silent", "status=500", "cut", "redirect=URL", "short", "garbled" or
/// "endless", each with "@" and a path behind it if not every request is meant:
/// "status=500@/api/master/heroes".
std::optional<Fault> parse_fault(QStringView text);

} // namespace tally::reference
