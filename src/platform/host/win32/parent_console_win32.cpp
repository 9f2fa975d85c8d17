#include "platform/host/parent_console.h"

#include <windows.h>

#include <cstdio>

namespace tally::platform {
namespace {

bool is_redirected(DWORD which)
{
    HANDLE stream = GetStdHandle(which);
    if (stream == nullptr || stream == INVALID_HANDLE_VALUE)
        return false;
    const DWORD type = GetFileType(stream);
    return type == FILE_TYPE_DISK || type == FILE_TYPE_PIPE;
}

} // namespace

void use_console_of_parent()
{
    const bool output_is_redirected = is_redirected(STD_OUTPUT_HANDLE);
    const bool errors_are_redirected = is_redirected(STD_ERROR_HANDLE);
    if ((output_is_redirected && errors_are_redirected) ||
        AttachConsole(ATTACH_PARENT_PROCESS) == FALSE)
        return;
    if (!output_is_redirected)
        std::freopen("CONOUT$", "w", stdout);
    if (!errors_are_redirected)
        std::freopen("CONOUT$", "w", stderr);
}

} // namespace tally::platform
