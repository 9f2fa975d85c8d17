#include "platform/host/fake/fake_host.h"

#include <algorithm>

namespace tally::platform {

const FakeWindow *FakeHost::find(WindowHandle window) const
{
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [&](const FakeWindow &w) { return w.handle == window; });
    return found == windows.end() ? nullptr : &*found;
}

std::vector<WindowHandle> FakeHost::top_level_windows()
{
    ++enumerations;
    std::vector<WindowHandle> handles;
    for (const FakeWindow &window : windows)
        handles.push_back(window.handle);
    return handles;
}

bool FakeHost::window_exists(WindowHandle window)
{
    return find(window) != nullptr;
}

bool FakeHost::window_visible(WindowHandle window)
{
    const FakeWindow *found = find(window);
    return found != nullptr && found->visible;
}

bool FakeHost::window_minimised(WindowHandle window)
{
    const FakeWindow *found = find(window);
    return found != nullptr && found->minimised;
}

std::u16string FakeHost::window_title(WindowHandle window)
{
    const FakeWindow *found = find(window);
    return found != nullptr ? found->title : std::u16string{};
}

std::uint32_t FakeHost::window_process_id(WindowHandle window)
{
    const FakeWindow *found = find(window);
    return found != nullptr ? found->pid : 0;
}

WindowRect FakeHost::window_rect(WindowHandle window)
{
    const FakeWindow *found = find(window);
    return found != nullptr ? found->rect : WindowRect{};
}

std::u16string FakeHost::image_path(std::uint32_t process_id)
{
    const auto found = processes.find(process_id);
    return found != processes.end() ? found->second.image_path : std::u16string{};
}

OpenedProcess FakeHost::open_process(std::uint32_t process_id)
{
    const auto found = processes.find(process_id);
    if (found == processes.end())
        return {};
    if (!found->second.memory)
        return {nullptr, found->second.rights_missing};
    ++opened;
    return {std::make_unique<FakeMemory>(found->second.memory), false};
}

LockAttempt FakeHost::try_instance_lock()
{
    ++lock_tries;
    if (lock_attempts.empty())
        return {LockOutcome::Taken, 0, "fake"};
    const LockAttempt answer = lock_attempts.front();
    if (lock_attempts.size() > 1)
        lock_attempts.pop_front();
    return answer;
}

} // namespace tally::platform
