#include "platform/host/win32/win32_host.h"

#include "platform/host/system_host.h"
#include "platform/host/win32/win32_memory.h"
#include "platform/host/win32/win32_rights.h"
#include "platform/host/win32/win32_text.h"

#include <windows.h>

#include <string>

namespace tally::platform {

namespace {

HWND hwnd_of(WindowHandle window)
{
    return reinterpret_cast<HWND>(window);
}

BOOL CALLBACK collect_window(HWND window, LPARAM list)
{
    reinterpret_cast<std::vector<WindowHandle> *>(list)->push_back(
        reinterpret_cast<WindowHandle>(window));
    return TRUE;
}

} // namespace

std::unique_ptr<Host> make_system_host()
{
    return std::make_unique<Win32Host>();
}

std::vector<WindowHandle> Win32Host::top_level_windows()
{
    std::vector<WindowHandle> windows;
    EnumWindows(collect_window, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

bool Win32Host::window_exists(WindowHandle window)
{
    return IsWindow(hwnd_of(window)) != FALSE;
}

bool Win32Host::window_visible(WindowHandle window)
{
    return IsWindowVisible(hwnd_of(window)) != FALSE;
}

bool Win32Host::window_minimised(WindowHandle window)
{
    return IsIconic(hwnd_of(window)) != FALSE;
}

std::u16string Win32Host::window_title(WindowHandle window)
{
    const int length = GetWindowTextLengthW(hwnd_of(window));
    if (length <= 0)
        return {};
    std::wstring title(static_cast<std::size_t>(length) + 1, L'\0');
    const int copied = GetWindowTextW(hwnd_of(window), title.data(), length + 1);
    title.resize(copied > 0 ? static_cast<std::size_t>(copied) : 0);
    return utf16_of(title);
}

std::uint32_t Win32Host::window_process_id(WindowHandle window)
{
    DWORD pid = 0;
    if (window != no_window)
        GetWindowThreadProcessId(hwnd_of(window), &pid);
    return pid;
}

WindowRect Win32Host::window_rect(WindowHandle window)
{
    RECT rect{};
    if (GetWindowRect(hwnd_of(window), &rect) == FALSE)
        return {};
    const int w = rect.right - rect.left;
    const int h = rect.bottom - rect.top;
    return {rect.left, rect.top, w, h, w > 0 && h > 0};
}

WindowHandle Win32Host::foreground_window()
{
    return reinterpret_cast<WindowHandle>(GetForegroundWindow());
}

std::uint32_t Win32Host::own_process_id()
{
    return GetCurrentProcessId();
}

std::u16string Win32Host::image_path(std::uint32_t process_id)
{
    HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process_id);
    if (process == nullptr)
        return {};
    std::wstring path(1024, L'\0');
    auto length = static_cast<DWORD>(path.size());
    const bool known = QueryFullProcessImageNameW(process, 0, path.data(), &length) != FALSE;
    CloseHandle(process);
    path.resize(known ? length : 0);
    return utf16_of(path);
}

void Win32Host::enable_debug_privilege()
{
    enable_own_debug_privilege();
}

OpenedProcess Win32Host::open_process(std::uint32_t process_id)
{
    HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process_id);
    if (process == nullptr)
        return {nullptr, true};
    return {std::make_unique<Win32Memory>(process), false};
}

bool Win32Host::elevated()
{
    return member_of_administrators();
}

LockAttempt Win32Host::try_instance_lock()
{
    constexpr const wchar_t *name = L"Local\\LedgerlineTallyhand-SingleInstance";
    constexpr const char *mechanism = "CreateMutexW";
    // Kept on success: the system drops the mutex with the process.
    [[maybe_unused]] static HANDLE kept_mutex = nullptr;

    HANDLE mutex = CreateMutexW(nullptr, TRUE, name);
    const DWORD error = GetLastError();
    if (mutex == nullptr)
        return {LockOutcome::Failed, error, mechanism};
    if (error == ERROR_ALREADY_EXISTS) {
        CloseHandle(mutex);
        return {LockOutcome::HeldElsewhere, 0, mechanism};
    }
    kept_mutex = mutex;
    return {LockOutcome::Taken, 0, mechanism};
}

void Win32Host::pause(std::chrono::milliseconds duration)
{
    Sleep(static_cast<DWORD>(duration.count()));
}

} // namespace tally::platform
