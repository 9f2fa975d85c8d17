#include "platform/updater/zip_names.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <string_view>

namespace tally::platform::Updater {
namespace {

bool is_plain(char c)
{
    constexpr std::string_view refused = "<>:\"|?*";
    return c >= ' ' && c <= '~' && refused.find(c) == std::string_view::npos;
}

/// CON, NUL.txt, com1 .log: Windows opens a device for these, in whichever folder.
bool is_device(const QByteArray &part)
{
    constexpr std::array<const char *, 7> devices = {"CON",    "PRN",     "AUX",   "NUL",
                                                     "CONIN$", "CONOUT$", "CLOCK$"};
    const QByteArray name = part.split('.').constFirst().trimmed().toUpper();
    if (name.size() == 4 && (name.startsWith("COM") || name.startsWith("LPT")))
        return name[3] >= '0' && name[3] <= '9';
    return std::any_of(devices.begin(), devices.end(),
                       [&](const char *device) { return name == device; });
}

const char *part_fault(const QByteArray &part)
{
    if (part.isEmpty())
        return "has an empty part";
    // ".." among them. Windows drops these ends, and another name would be left.
    if (part.endsWith('.') || part.endsWith(' '))
        return "has a part that ends in a dot or a blank";
    return is_device(part) ? "is that of a device" : nullptr;
}

} // namespace

const char *name_fault(const QByteArray &name)
{
    QByteArray path = name;
    path.replace('\\', '/');
    if (path.startsWith('/'))
        return "is absolute";
    if (!std::all_of(path.begin(), path.end(), is_plain))
        return "holds a character that it must not";
    if (path.endsWith('/'))
        path.chop(1);
    for (const QByteArray &part : path.split('/')) {
        if (const char *fault = part_fault(part))
            return fault;
    }
    return nullptr;
}

} // namespace tally::platform::Updater
