#pragma once

#include <QString>
#include <QStringList>

namespace tally::ui {

/// What the settings dialog says about what is typed, while it is typed.

struct FolderNote {
    QString text; ///< empty if there is nothing to say
    bool is_wrong = false;

    bool operator==(const FolderNote &) const = default;
};
/// \param stored the folder that is used now
/// \param is_there whether the typed one exists
FolderNote folder_note(const QString &typed, const QString &stored, bool is_there);

/// How a list of hours is understood: "warns 5, 3 and 1 h before".
QString hours_note(const QString &typed);

/// Where to begin to look for another folder.
QString browse_start(const QString &typed, const QString &default_dir);

/// The dialog's paragraph about the folder, as rich text.
QString folder_help(const QStringList &candidates);

} // namespace tally::ui
