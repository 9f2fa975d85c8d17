#pragma once

#include <string>

namespace tally::platform {

/// Windows texts are UTF-16 in units of wchar_t.
inline std::u16string utf16_of(const std::wstring &text)
{
    static_assert(sizeof(wchar_t) == sizeof(char16_t));
    return {text.begin(), text.end()};
}

} // namespace tally::platform
