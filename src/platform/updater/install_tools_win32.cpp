#include "platform/updater/install.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <windows.h>

#include <shlobj.h>

#include <string>

namespace tally::platform::Updater {
namespace {

QString short_name_of(const QString &path)
{
    const std::wstring name = QDir::toNativeSeparators(path).toStdWString();
    std::wstring result(GetShortPathNameW(name.c_str(), nullptr, 0), L'\0');
    const DWORD length =
        GetShortPathNameW(name.c_str(), result.data(), static_cast<DWORD>(result.size()));
    return length < result.size() ? QString::fromStdWString(result.substr(0, length)) : QString();
}

bool start_script(const QString &script)
{
    QProcess cmd;
    cmd.setProgram(QStringLiteral("cmd.exe"));
    cmd.setNativeArguments(
        cmd_arguments(safe_path(script, ScriptLine::Batch, short_name_of).value_or(script)));
    return cmd.startDetached();
}

} // namespace

InstallTools system_tools()
{
    return {
        .script_name = QStringLiteral("install_update.bat"),
        .executable_name = QStringLiteral("ledgerline-tallyhand.exe"),
        .program_heads = {"MZ"},
        .temp_dir = QDir::tempPath(),
        .process_id = QCoreApplication::applicationPid(),
        .executable_script =
            [](const ExecutableSwap &swap) { return batch_for(swap, short_name_of); },
        .payload_script = [](const PayloadSwap &swap) { return batch_for(swap, short_name_of); },
        .start = start_script,
        .lack =
            [](UpdateForm) {
                return QString();
            }};
}

bool is_elevated()
{
    return IsUserAnAdmin() != FALSE;
}

bool is_own(const QFileInfo &)
{
    return true; // each user has a folder of his own for what is temporary
}

} // namespace tally::platform::Updater
