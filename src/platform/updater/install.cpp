#include "platform/updater/install.h"

#include "platform/files/whole_file.h"
#include "platform/paths/data_folders.h"
#include "platform/updater/backups.h"
#include "platform/updater/update_log.h"
#include "platform/updater/zip_directory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace tally::platform::Updater {
namespace {

DownloadResult failure(const QString &error)
{
    qCWarning(log_update).noquote() << "install:" << error;
    return {.ok = false, .error = error};
}

ExecutableSwap executable_swap(const QString &new_exe, const QString &current_exe, bool elevate,
                               const InstallTools &tools)
{
    return {.new_exe = new_exe,
            .current_exe = current_exe,
            .elevate = elevate,
            .process_id = tools.process_id};
}

PayloadSwap payload_swap(const QString &zip_path, const QString &current_exe,
                         const QString &old_version, const QString &new_version, bool elevate,
                         const InstallTools &tools)
{
    const QDir install(app_root_of(QFileInfo(current_exe).path()));
    const QDir updates(install.filePath(QStringLiteral("data/updates")));
    return {.zip = zip_path,
            .current_exe = current_exe,
            .old_version = old_version,
            .new_version = new_version,
            .elevate = elevate,
            .process_id = tools.process_id,
            .install_dir = install.path(),
            .staging_dir = updates.filePath(QStringLiteral("staging")),
            .backup_dir = backup_path(tools.temp_dir, old_version),
            .data_dir = install.filePath(QStringLiteral("data")),
            .log = updates.filePath(QStringLiteral("install_update.log")),
            .marker = updates.filePath(QStringLiteral("rollback-pending.txt")),
            .new_exe = install.filePath(tools.executable_name)};
}

/// Why a payload must not be installed; empty if it may.
QString payload_fault(const PayloadSwap &swap, const InstallTools &tools)
{
    for (const QString &version : {swap.old_version, swap.new_version}) {
        if (!is_version_name(version))
            return QStringLiteral("\"%1\" is no version").arg(version);
    }
    if (!is_newer(swap.new_version, swap.old_version))
        return QStringLiteral("%1 is not newer than %2").arg(swap.new_version, swap.old_version);
    const auto fault = zip_fault(swap.zip, tools.executable_name);
    return fault ? QStringLiteral("The payload is refused: %1").arg(*fault) : QString();
}

/// Whether a file that comes alone can be what it replaces: not a page of the server, nor a zip
/// whose hash and signature would both be right.
bool is_program(const QString &path, const InstallTools &tools)
{
    constexpr qint64 longest = 4;
    QFile file(path);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(longest) : QByteArray();
    return std::any_of(tools.program_heads.begin(), tools.program_heads.end(),
                       [&](const QByteArray &expected) { return head.startsWith(expected); });
}

/// A script and how it is to be run.
struct Run {
    QString path;
    QByteArray text;
    QString copy; ///< for who wants to know later what was run; empty: none
    QString spawn_error;
};

/// Not through a file that is flushed to the disk: behind a large download that takes its time, and
/// the window waits. \return why it could not be written; empty if all of it was.
QString write_script(const QString &path, const QByteArray &text)
{
    // One of an earlier update may still run, and a shell reads its file as it goes.
    QFile::remove(path);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered) &&
        file.write(text) == text.size())
        return {};
    const QString trouble = write_trouble(file);
    file.remove(); // half of it would be run as far as it goes
    return trouble;
}

DownloadResult start(const Run &run, const InstallTools &tools)
{
    if (const QString trouble = write_script(run.path, run.text); !trouble.isEmpty()) {
        qCWarning(log_update).noquote() << run.path << trouble;
        return failure(QStringLiteral("Cannot write bat: %1").arg(run.path));
    }
    if (!run.copy.isEmpty())
        write_script(run.copy, run.text);
    qCInfo(log_update).noquote() << "install: starting" << run.path;
    if (!tools.start(run.path))
        return failure(run.spawn_error);
    return {.ok = true, .error = {}};
}

} // namespace

QString obstacle_to(UpdateForm form, const QString &current_exe, bool elevate,
                    const InstallTools &tools)
{
    if (const QString lack = tools.lack(form); !lack.isEmpty())
        return lack;
    // Any file of the folder of updates, and any version, will do for a look at the paths.
    const QString version = QStringLiteral("v");
    PayloadSwap payload = payload_swap({}, current_exe, version, version, elevate, tools);
    payload.zip = payload.staging_dir + QStringLiteral(".zip");
    const bool is_payload = form == UpdateForm::Payload;
    const QString folder = is_payload ? payload.install_dir : QFileInfo(current_exe).path();
    if (!QFileInfo(folder).isWritable())
        return QStringLiteral("The folder \"%1\" cannot be written.").arg(folder);
    const Script script =
        is_payload
            ? tools.payload_script(payload)
            : tools.executable_script(executable_swap(payload.zip, current_exe, elevate, tools));
    return script.refusal;
}

DownloadResult install_and_restart(const QString &new_exe, const QString &current_exe, bool elevate,
                                   const InstallTools &tools)
{
    if (!QFile::exists(new_exe))
        return failure(QStringLiteral("New exe not found: %1").arg(new_exe));
    if (!is_program(new_exe, tools))
        return failure(QStringLiteral("What has come is no program: %1").arg(new_exe));
    const Script script =
        tools.executable_script(executable_swap(new_exe, current_exe, elevate, tools));
    if (!script.refusal.isEmpty())
        return failure(script.refusal);
    return start({.path = QFileInfo(current_exe).dir().filePath(tools.script_name),
                  .text = script.text,
                  .copy = {},
                  .spawn_error = QStringLiteral("Cannot spawn bat")},
                 tools);
}

DownloadResult install_from_payload_zip(const QString &zip_path, const QString &current_exe,
                                        const QString &old_version, const QString &new_version,
                                        bool elevate, const InstallTools &tools)
{
    if (!QFile::exists(zip_path))
        return failure(QStringLiteral("Payload zip not found: %1").arg(zip_path));
    const PayloadSwap swap =
        payload_swap(zip_path, current_exe, old_version, new_version, elevate, tools);
    if (const QString fault = payload_fault(swap, tools); !fault.isEmpty())
        return failure(fault);
    const Script script = tools.payload_script(swap);
    if (!script.refusal.isEmpty())
        return failure(script.refusal);

    const QDir updates = QFileInfo(swap.log).dir();
    QDir().mkpath(updates.path());
    QDir().mkpath(QFileInfo(swap.backup_dir).path());
    const QString path = updates.filePath(tools.script_name);
    return start({.path = path,
                  .text = script.text,
                  .copy = path + QStringLiteral(".dump"),
                  .spawn_error = QStringLiteral("Cannot spawn install bat")},
                 tools);
}

} // namespace tally::platform::Updater
