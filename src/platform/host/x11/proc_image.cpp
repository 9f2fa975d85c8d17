#include "platform/host/x11/proc_image.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <unistd.h>

#include <array>
#include <climits>

namespace tally::platform {

namespace {

constexpr qint64 longest_command_line = 1 << 16;

bool is_wine_loader(std::string_view image)
{
    const std::string_view name = image.substr(image.rfind('/') + 1);
    return name.starts_with("wine");
}

bool names_windows_program(std::string_view argument)
{
    constexpr std::string_view ending = ".exe";
    if (argument.size() <= ending.size())
        return false;
    const std::string_view tail = argument.substr(argument.size() - ending.size());
    return qstrnicmp(tail.data(), ending.data(), ending.size()) == 0;
}

} // namespace

std::string shown_image_path(std::string_view image, std::string_view command_line)
{
    // What the kernel appends when the file was replaced under a running program.
    constexpr std::string_view deleted = " (deleted)";
    if (image.ends_with(deleted))
        image.remove_suffix(deleted.size());
    while (is_wine_loader(image) && !command_line.empty()) {
        const std::size_t end = std::min(command_line.find('\0'), command_line.size());
        const std::string_view argument = command_line.substr(0, end);
        if (names_windows_program(argument))
            return std::string{argument};
        command_line.remove_prefix(std::min(end + 1, command_line.size()));
    }
    return std::string{image};
}

std::u16string image_path_of_process(std::uint32_t process_id)
{
    const std::string folder = "/proc/" + std::to_string(process_id);
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlink((folder + "/exe").c_str(), target.data(), target.size());
    if (length <= 0)
        return {};
    QFile file{QString::fromStdString(folder + "/cmdline")};
    QByteArray arguments;
    if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        arguments = file.read(longest_command_line);
    const std::string path =
        shown_image_path({target.data(), static_cast<std::size_t>(length)},
                         {arguments.constData(), static_cast<std::size_t>(arguments.size())});
    return QString::fromStdString(path).toStdU16String();
}

} // namespace tally::platform
