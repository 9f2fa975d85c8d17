#include "data/master/icon_file.h"

#include <algorithm>
#include <iterator>

namespace tally::data {
namespace {

// The longest name that every common file system takes has 255 bytes.
constexpr qsizetype longest_hash = 200;
constexpr QStringView devices[] = {u"con", u"prn", u"aux", u"nul"};

bool is_safe(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           c == u'-' || c == u'_';
}

/// On Windows these names stand for devices, whatever ending they have.
bool names_device(const QString &hash)
{
    if (hash.size() == 4 && hash.back().isDigit())
        return hash.startsWith(u"com", Qt::CaseInsensitive) ||
               hash.startsWith(u"lpt", Qt::CaseInsensitive);
    return std::any_of(std::begin(devices), std::end(devices), [&hash](QStringView device) {
        return hash.compare(device, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

std::optional<QString> icon_file_name(const QString &hash)
{
    if (hash.isEmpty() || hash.size() > longest_hash ||
        !std::all_of(hash.begin(), hash.end(), is_safe) || names_device(hash))
        return std::nullopt;
    return hash + QStringLiteral(".webp");
}

} // namespace tally::data
