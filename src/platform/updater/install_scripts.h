#pragma once

#include "platform/updater/script_paths.h"

#include <QByteArray>
#include <QString>

namespace tally::platform::Updater {

/// What the script that replaces one executable needs to know. Paths with '/'.
struct ExecutableSwap {
    QString new_exe;
    QString current_exe;
    bool elevate = false; ///< whether the new process must run as administrator
    qint64 process_id = 0;
};

/// The same for a whole installation.
struct PayloadSwap {
    QString zip;
    QString current_exe;
    QString old_version;
    QString new_version;
    bool elevate = false;
    qint64 process_id = 0;

    QString install_dir;
    QString staging_dir; ///< where the zip is unpacked
    QString backup_dir;
    QString data_dir; ///< the one folder that stays as it is
    QString log;
    QString marker; ///< that the next start finds
    QString new_exe;
};

/// A script's text, or why there can be none.
struct Script {
    QByteArray text;
    QString refusal = {};
};

// The scripts of Windows, in Latin-1 with CR LF. Pure texts, and so the same on every system.
Script batch_for(const ExecutableSwap &swap, const ShortNames &short_names);
Script batch_for(const PayloadSwap &swap, const ShortNames &short_names);

/// What `cmd.exe` is to be given so that it runs a script whose path may hold '&' and blanks.
QString cmd_arguments(const QString &script);

// The scripts of all other systems, for a plain POSIX shell. They take the same steps, and whenever
// one is killed, an installation that starts is left.
Script shell_script_for(const ExecutableSwap &swap);
Script shell_script_for(const PayloadSwap &swap);

} // namespace tally::platform::Updater
