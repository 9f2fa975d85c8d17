#include "platform/files/file_copy.h"

#include "platform/files/exact_files.h"
#include "platform/files/file_copy_parts.h"

#include <algorithm>

namespace tally::platform {
namespace {

bool is_strict_prefix(const QString &copy_path, const QString &path)
{
    InputFile copy(copy_path);
    InputFile file(path);
    if (!copy.stamp() || copy.size() >= file.size())
        return false;
    constexpr qint64 step = 1 << 20;
    for (qint64 left = copy.size(); left > 0;) {
        const QByteArray bytes = copy.read(std::min(left, step));
        if (bytes.isEmpty() || bytes != file.read(bytes.size()))
            return false;
        left -= bytes.size();
    }
    return true;
}

} // namespace

bool copy_file(const QString &from, const QString &to)
{
    return !file_exists(to) && put_copy(from, to, false);
}

bool complete_copy(const QString &from, const QString &to)
{
    return is_strict_prefix(to, from) && put_copy(from, to, true);
}

} // namespace tally::platform
