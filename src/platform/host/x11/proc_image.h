#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tally::platform {

/// The path of a process image as the user knows it: of a program that Wine runs, its `.exe` by the
/// command line, since the image itself is Wine's loader.
/// \param image the target of /proc/PID/exe
/// \param command_line the content of /proc/PID/cmdline: arguments that each end in a zero byte
std::string shown_image_path(std::string_view image, std::string_view command_line);

/// The same for a running process, as UTF-16; empty if its image cannot be queried.
std::u16string image_path_of_process(std::uint32_t process_id);

} // namespace tally::platform
