#include "platform/host/x11/x11_host.h"

#include "platform/host/system_host.h"
#include "platform/host/x11/file_lock.h"
#include "platform/host/x11/proc_image.h"
#include "platform/host/x11/proc_memory.h"

#include <unistd.h>

#include <thread>

namespace tally::platform {

std::unique_ptr<Host> make_system_host()
{
    return std::make_unique<X11Host>();
}

std::uint32_t X11Host::window_process_id(WindowHandle window)
{
    return windows_.process_id(window);
}

std::uint32_t X11Host::own_process_id()
{
    return static_cast<std::uint32_t>(::getpid());
}

std::u16string X11Host::image_path(std::uint32_t process_id)
{
    return image_path_of_process(process_id);
}

OpenedProcess X11Host::open_process(std::uint32_t process_id)
{
    return ProcMemory::open(process_id);
}

bool X11Host::elevated()
{
    return ::geteuid() == 0;
}

LockAttempt X11Host::try_instance_lock()
{
    return try_file_lock(instance_lock_path());
}

void X11Host::pause(std::chrono::milliseconds duration)
{
    std::this_thread::sleep_for(duration);
}

} // namespace tally::platform
