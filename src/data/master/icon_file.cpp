#include "master/icon_file.h"

#include <algorithm>

namespace tally::data {
namespace {

// The longest name that every common file system takes has 255 bytes.
constexpr qsizetype longest_hash = 200;

bool is_safe(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           c == u'-' || c == u'_';
}

} // namespace

std::optional<QString> icon_file_name(const QString &hash)
{
    if (hash.isEmpty() || hash.size() > longest_hash ||
        !std::all_of(hash.begin(), hash.end(), is_safe))
        return std::nullopt;
    return hash + QStringLiteral(".webp");
}

} // namespace tally::data
