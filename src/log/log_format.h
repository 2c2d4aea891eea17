// Printf formats that are checked against their arguments when the program is compiled, and the arguments themselves.
// Every number is brought to 32 bit, whatever its type and the system, so %d, %u, %X and %c are all that is needed
// beside %s. The checked format is the only kind that log.h takes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

template <typename T>
inline constexpr bool IsLogText = std::is_convertible_v<T, const char*> || std::is_same_v<std::decay_t<T>, std::string>;

// Numbers, enumerators, handles and functions, the latter two by the low 32 bits of their address.
template <typename T>
requires(std::is_integral_v<T> || std::is_enum_v<T>) constexpr uint32_t ToLogArgument(T Value)
{
    return static_cast<uint32_t>(Value);
}
template <typename T>
requires(!std::is_convertible_v<T*, const char*>) uint32_t ToLogArgument(T* pValue)
{
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pValue));
}
inline const char* ToLogArgument(const char* pszText)
{
    return pszText ? pszText : "(null)";
}
inline const char* ToLogArgument(const std::string& strText)
{
    return strText.c_str();
}

template <typename... Args>
class CLogFormat
{
public:
    template <size_t N>
    consteval CLogFormat(const char (&szFormat)[N]) : m_pszFormat(szFormat)
    {
        const char* pszNext = szFormat;
        (CheckArgument<Args>(&pszNext), ...);
        if (FindConversion(&pszNext))
            throw "more conversions than arguments";
    }

    const char* Get() const { return m_pszFormat; }

private:
    // The character of the next conversion, which *ppszNext is then behind; 0 at the end of the format.
    static constexpr char FindConversion(const char** ppszNext)
    {
        const char*& pszNext = *ppszNext;
        while (*pszNext && *pszNext != '%')
            ++pszNext;
        if (!*pszNext)
            return 0;
        ++pszNext;
        while (*pszNext >= '0' && *pszNext <= '9')
            ++pszNext;
        return *pszNext++;
    }

    template <typename T>
    static constexpr void CheckArgument(const char** ppszNext)
    {
        const char cConversion = FindConversion(ppszNext);
        constexpr std::string_view kConversions = IsLogText<T> ? "s" : "duXc";
        if (kConversions.find(cConversion) == kConversions.npos)
            throw "this conversion does not fit its argument";
    }

    const char* m_pszFormat;
};
