// Letter case of device paths, port names, model strings, and of the keys in the hosts' texts. Only the letters of
// ASCII have case here, whatever the locale is: these names come from drivers, handsets and formats, not from people.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

constexpr char ToLower(char ch)
{
    return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch;
}

constexpr char ToUpper(char ch)
{
    return ch >= 'a' && ch <= 'z' ? static_cast<char>(ch - 'a' + 'A') : ch;
}

inline std::string LowerCase(std::string_view strText)
{
    std::string strLower(strText);
    std::ranges::transform(strLower, strLower.begin(), ToLower);
    return strLower;
}

inline bool EqualsIgnoringCase(std::string_view strLeft, std::string_view strRight)
{
    return std::ranges::equal(strLeft, strRight, {}, ToUpper, ToUpper);
}

inline bool BeginsIgnoringCase(std::string_view strText, std::string_view strBegin)
{
    return strText.size() >= strBegin.size() && EqualsIgnoringCase(strText.substr(0, strBegin.size()), strBegin);
}

// Where the text first holds what is sought; npos if it does not.
inline size_t FindIgnoringCase(std::string_view strText, std::string_view strSought)
{
    const auto itFound = std::search(strText.begin(), strText.end(), strSought.begin(), strSought.end(),
                                     [](char cLeft, char cRight) { return ToUpper(cLeft) == ToUpper(cRight); });
    return itFound == strText.end() && !strSought.empty() ? std::string_view::npos
                                                          : static_cast<size_t>(itFound - strText.begin());
}
