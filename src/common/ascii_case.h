// Letter case of device paths, port names and model strings. Only the letters of ASCII have case here, whatever the
// locale is: these names come from drivers and handsets, not from people.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

inline std::string LowerCase(std::string_view strText)
{
    std::string strLower(strText);
    std::ranges::transform(strLower, strLower.begin(),
                           [](char ch) { return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch; });
    return strLower;
}

inline bool EqualsIgnoringCase(std::string_view strLeft, std::string_view strRight)
{
    return LowerCase(strLeft) == LowerCase(strRight);
}
