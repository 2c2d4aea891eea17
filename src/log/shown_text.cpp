#include "log/shown_text.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include <windows.h>

#include "common/text.h"

namespace {

constexpr std::pair<char16_t, char16_t> kUnsafe[]{
    {0x0000, 0x001F}, {0x007F, 0x009F}, {0x00AD, 0x00AD}, {0x061C, 0x061C}, {0x180E, 0x180E}, {0x200B, 0x200F},
    {0x2028, 0x202E}, {0x2060, 0x206F}, {0xDB40, 0xDB40}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFD},
};

bool IsAscii(char cByte)
{
    return static_cast<unsigned char>(cByte) < 0x80;
}

// Of ASCII, what is no control character.
bool IsPlain(char cByte)
{
    return static_cast<unsigned char>(cByte - 0x20) < 0x7F - 0x20;
}

// Empty too when the system fails the conversion: then nothing is known of the text.
std::u16string Widen(std::string_view strText)
{
    try {
        return ToWide(strText);
    } catch (const CTextError&) {
        return {};
    }
}

// How many bytes a character of UTF-8 has that begins with this one.
size_t GetLength(unsigned char byLead)
{
    if (byLead < 0xC2)
        return 1;
    return byLead < 0xE0 ? 2 : byLead < 0xF0 ? 3 : 4;
}

bool IsSafe(std::string_view strCharacter, bool bUtf8)
{
    const auto byFirst = static_cast<unsigned char>(strCharacter[0]);
    if (byFirst < 0x80)
        return IsPlain(strCharacter[0]);
    if (!bUtf8 && byFirst < 0xA0)
        return false; // a terminal may take it for a control character, whatever it is in the code page
    const std::u16string strWide = Widen(strCharacter);
    return strWide.size() == (strCharacter.size() == 4 ? 2 : 1) &&
           std::ranges::none_of(kUnsafe, [cWide = strWide[0]](const auto& Range) {
               return Range.first <= cWide && cWide <= Range.second;
           });
}

std::string GetMark(unsigned char byCharacter)
{
    char szMark[8];
    std::snprintf(szMark, sizeof szMark, "\\x%02X", byCharacter);
    return szMark;
}

} // namespace

std::string ShowControls(std::string_view strText)
{
    if (std::ranges::all_of(strText, IsPlain)) // as most lines are
        return std::string(strText);
    const bool bUtf8 = GetACP() == CP_UTF8;
    const bool bAscii = std::ranges::all_of(strText, IsAscii);
    const size_t uCharacters = bUtf8 || bAscii ? 0 : Widen(strText).size();
    const bool bKeep = uCharacters > 0 && uCharacters < strText.size();
    std::string strShown;
    while (!strText.empty()) {
        const auto byFirst = static_cast<unsigned char>(strText[0]);
        const std::string_view strCharacter = strText.substr(0, bUtf8 ? GetLength(byFirst) : 1);
        const bool bSafe = (bKeep && byFirst >= 0x80) || IsSafe(strCharacter, bUtf8);
        strShown += bSafe ? std::string(strCharacter) : GetMark(byFirst);
        strText.remove_prefix(bSafe ? strCharacter.size() : 1);
    }
    return strShown;
}
