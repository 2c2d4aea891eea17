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

// The result of a conversion of a text that is not empty, which is never empty either.
static size_t Checked(int nResult)
{
    if (nResult <= 0)
        throw CTextError();
    return static_cast<size_t>(nResult);
}

std::u16string ToWide(std::string_view strText)
{
    const int nLength = GetLength(strText.size());
    if (nLength == 0)
        return {};
    // No code page makes more units than bytes.
    std::u16string strWide(static_cast<size_t>(nLength), u'\0');
    const auto Convert = [&](DWORD dwFlags) {
        return MultiByteToWideChar(CP_ACP, dwFlags, strText.data(), nLength, reinterpret_cast<LPWSTR>(strWide.data()),
                                   nLength);
    };
    int nUnits = Convert(MB_PRECOMPOSED | MB_USEGLYPHCHARS);
    if (nUnits == 0 && GetLastError() == ERROR_INVALID_FLAGS)
        nUnits = Convert(0); // a code page without such flags: UTF-8
    strWide.resize(Checked(nUnits));
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
    const auto Convert = [&](int nRoom) {
        return WideCharToMultiByte(CP_ACP, 0, pwszText, nUnits, nRoom ? strAnsi.data() : nullptr, nRoom, nullptr,
                                   nullptr);
    };
    int nLength = Convert(nUnits);
    if (nLength == 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        strAnsi.resize(Checked(Convert(0)));
        nLength = Convert(static_cast<int>(strAnsi.size()));
    }
    strAnsi.resize(Checked(nLength));
    return strAnsi;
}

std::string ToAnsi(std::u16string_view strText, size_t uLimit)
{
    std::string strAnsi = ToAnsi(strText);
    while (strAnsi.size() > uLimit) {
        const bool bPair = strText.back() >= 0xDC00 && strText.back() < 0xE000;
        strText.remove_suffix(std::min<size_t>(bPair ? 2 : 1, strText.size()));
        strAnsi = ToAnsi(strText);
    }
    return strAnsi;
}
