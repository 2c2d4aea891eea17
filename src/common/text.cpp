#include "common/text.h"

#include <algorithm>
#include <climits>

#include <windows.h>

static_assert(sizeof(WCHAR) == sizeof(char16_t));

// A text of INT_MAX units or more is cut there: the system's conversions count in int.
static int GetLength(size_t uLength)
{
    return static_cast<int>(std::min<size_t>(uLength, INT_MAX));
}

std::u16string ToWide(std::string_view strText)
{
    constexpr DWORD kFlags = MB_PRECOMPOSED | MB_USEGLYPHCHARS;
    const int nLength = GetLength(strText.size());
    // No code page makes more units than bytes.
    std::u16string strWide(static_cast<size_t>(nLength), u'\0');
    const int nUnits = nLength == 0 ? 0
                                    : MultiByteToWideChar(CP_ACP, kFlags, strText.data(), nLength,
                                                          reinterpret_cast<LPWSTR>(strWide.data()), nLength);
    strWide.resize(static_cast<size_t>(nUnits));
    return strWide;
}

std::string ToAnsi(std::u16string_view strText)
{
    const int nUnits = GetLength(strText.size());
    if (nUnits == 0)
        return {};
    const LPCWSTR pwszText = reinterpret_cast<LPCWSTR>(strText.data());
    // Nearly every text has no more bytes than units.
    std::string strAnsi(static_cast<size_t>(nUnits), '\0');
    int nLength = WideCharToMultiByte(CP_ACP, 0, pwszText, nUnits, strAnsi.data(), nUnits, nullptr, nullptr);
    if (nLength == 0) {
        nLength = WideCharToMultiByte(CP_ACP, 0, pwszText, nUnits, nullptr, 0, nullptr, nullptr);
        strAnsi.resize(static_cast<size_t>(nLength));
        if (nLength > 0)
            WideCharToMultiByte(CP_ACP, 0, pwszText, nUnits, strAnsi.data(), nLength, nullptr, nullptr);
    }
    strAnsi.resize(static_cast<size_t>(nLength));
    return strAnsi;
}
