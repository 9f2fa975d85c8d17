#pragma once

#include "platform/updater/download.h"
#include "platform/updater/install_scripts.h"
#include "platform/updater/version_record.h"

#include <QByteArrayList>
#include <QString>

#include <functional>

class QFileInfo;

namespace tally::platform::Updater {

/// How this system installs an update. Passed in, so that a test can look at what would be done.
struct InstallTools {
    QString script_name;          ///< without a suffix in ".dump"
    QString executable_name;      ///< of the program in a payload
    QByteArrayList program_heads; ///< with one of which each executable begins
    QString temp_dir;             ///< where backups lie
    qint64 process_id = 0;        ///< that the script waits for
    std::function<Script(const ExecutableSwap &)> executable_script;
    std::function<Script(const PayloadSwap &)> payload_script;
    /// Starts a script that outlives the program. \return whether it runs.
    std::function<bool(const QString &script)> start;
    /// Why updates of a form cannot be installed here; empty if they can.
    std::function<QString(UpdateForm form)> lack;
};

InstallTools system_tools();

/// Whether the program runs as administrator.
bool is_elevated();

/// Whether a file or folder is this user's, so far as others can have theirs in the same place.
bool is_own(const QFileInfo &file);

/// What keeps an update from being installed, as far as it can be told before it is downloaded:
/// a tool that is missing, a folder that cannot be written, a path that a script cannot carry.
/// Empty if nothing does.
QString obstacle_to(UpdateForm form, const QString &current_exe, bool elevate,
                    const InstallTools &tools = system_tools());

// Each writes a script and starts it. Once `ok`, the program must end at once, since the script
// waits for it. Before that nothing of the installation is touched.

/// \param elevate whether the new process must run as administrator
DownloadResult install_and_restart(const QString &new_exe, const QString &current_exe, bool elevate,
                                   const InstallTools &tools = system_tools());

DownloadResult install_from_payload_zip(const QString &zip_path, const QString &current_exe,
                                        const QString &old_version, const QString &new_version,
                                        bool elevate, const InstallTools &tools = system_tools());

} // namespace tally::platform::Updater
