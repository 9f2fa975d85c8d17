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
    };
    Kind kind = Kind::Silent;
    QString path;
    int number = 0;
    QString target;
};

/// Reads "slow=3000", "silent", "status=500", "cut" or "redirect=URL", each with "@" and a path
/// behind it if not every request is meant: "status=500@/api/master/heroes".
std::optional<Fault> parse_fault(QStringView text);

} // namespace tally::reference
