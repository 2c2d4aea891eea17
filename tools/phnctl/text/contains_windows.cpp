// With the system's own search for text, in no language in particular.
#include "phnctl/text/contains.h"

#include <windows.h>

namespace phnctl {

namespace {

std::wstring Wide(const std::string& text)
{
    const int length = static_cast<int>(text.size());
    const int needed = text.empty() ? 0 : MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    if (needed > 0)
        MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), needed);
    return wide;
}

} // namespace

bool Contains(const std::string& text, const std::string& wanted)
{
    const std::wstring whole = Wide(text);
    const std::wstring part = Wide(wanted);
    return !whole.empty() && !part.empty() &&
           FindNLSStringEx(LOCALE_NAME_INVARIANT, FIND_FROMSTART | LINGUISTIC_IGNORECASE | LINGUISTIC_IGNOREDIACRITIC,
                           whole.data(), static_cast<int>(whole.size()), part.data(), static_cast<int>(part.size()),
                           nullptr, nullptr, nullptr, 0) >= 0;
}

} // namespace phnctl
