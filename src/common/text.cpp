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

static int ConvertToAnsi(std::u16string_view strText, char* pszRoom, size_t uRoom)
{
    return WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<LPCWSTR>(strText.data()), GetLength(strText.size()), pszRoom,
                               GetLength(uRoom), nullptr, nullptr);
}

static size_t GetAnsiLength(std::u16string_view strText)
{
    return Checked(ConvertToAnsi(strText, nullptr, 0));
}

void AppendAnsi(std::u16string_view strText, std::string* pstrAnsi)
{
    if (strText.empty())
        return;
    char szRoom[512]; // whatever a field of the handset makes has room here
    const size_t uLength = strText.size() > sizeof szRoom / 4 ? GetAnsiLength(strText) : sizeof szRoom;
    if (uLength <= sizeof szRoom) {
        pstrAnsi->append(szRoom, Checked(ConvertToAnsi(strText, szRoom, sizeof szRoom)));
        return;
    }
    const size_t uBefore = pstrAnsi->size();
    pstrAnsi->resize(uBefore + uLength);
    Checked(ConvertToAnsi(strText, pstrAnsi->data() + uBefore, uLength));
}

std::string ToAnsi(std::u16string_view strText)
{
    std::string strAnsi;
    AppendAnsi(strText, &strAnsi);
    return strAnsi;
}

static bool IsBetween(char16_t wUnit, char16_t wFirst, char16_t wLast)
{
    return wUnit >= wFirst && wUnit <= wLast;
}

// In units; of a text that is not empty.
static size_t GetFirstCharacterLength(std::u16string_view strText)
{
    return strText.size() > 1 && IsBetween(strText[0], 0xD800, 0xDBFF) && IsBetween(strText[1], 0xDC00, 0xDFFF) ? 2 : 1;
}

std::string ToAnsi(std::u16string_view strText, size_t uLimit)
{
    std::string strAnsi = ToAnsi(strText);
    if (strAnsi.size() <= uLimit)
        return strAnsi;
    // Which bytes are a character, only its own conversion tells.
    strAnsi.clear();
    while (!strText.empty()) {
        const size_t uWhole = strAnsi.size();
        const size_t uLength = GetFirstCharacterLength(strText);
        AppendAnsi(strText.substr(0, uLength), &strAnsi);
        if (strAnsi.size() > uLimit) {
            strAnsi.resize(uWhole);
            break;
        }
        strText.remove_prefix(uLength);
    }
    return strAnsi;
}
