#include "platform/updater/install.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

namespace tally::platform::Updater {
namespace {

QString lack_for(UpdateForm form)
{
    const bool can_unpack = form != UpdateForm::Payload ||
                            !QStandardPaths::findExecutable(QStringLiteral("unzip")).isEmpty();
    return can_unpack ? QString()
                      : QStringLiteral("The update comes as a zip, and \"unzip\" is not installed. "
                                       "Install it and try again.");
}

} // namespace

InstallTools system_tools()
{
    return {.script_name = QStringLiteral("install_update.sh"),
            .executable_name = QStringLiteral("ledgerline-tallyhand"),
            .program_heads = {"\x7f"
                              "ELF",
                              "#!"},
            .temp_dir = QDir::tempPath(),
            .process_id = QCoreApplication::applicationPid(),
            .executable_script = [](const ExecutableSwap &swap) { return shell_script_for(swap); },
            .payload_script = [](const PayloadSwap &swap) { return shell_script_for(swap); },
            .start =
                [](const QString &script) {
                    return QProcess::startDetached(QStringLiteral("/bin/sh"), {script});
                },
            .lack = lack_for};
}

bool is_elevated()
{
    return ::geteuid() == 0;
}

bool is_own(const QFileInfo &file)
{
    return file.ownerId() == ::geteuid();
}

} // namespace tally::platform::Updater
