#include "phonebook/vcard_reader.h"

#include <algorithm>

#include "common/decimal.h"
#include "common/keyed_lines.h"

namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr size_t kMaxFilteredCharacters = 260;

// The text of its last line, which no line end follows, begins here.
size_t FindLastLine(std::string_view strText)
{
    return std::max(strText.rfind('\r') + 1, strText.rfind('\n') + 1); // npos + 1 is 0
}

constexpr CLineKeys kLineKeys(kVCardKeys);

} // namespace

CVCardText::CVCardText(std::string_view strText)
    : m_strText(strText.substr(0, strText.find('\0'))),
      m_auPositions(FindKeyedLines(kLineKeys, m_strText, FindLastLine(m_strText)))
{
}

std::optional<size_t> CVCardText::FindProperty(EVCardKey eKey) const
{
    if (m_auPositions[eKey] == kNone)
        return std::nullopt;
    return m_auPositions[eKey];
}

std::optional<size_t> CVCardText::GetVCardProperty(EVCardKey eKey, std::string_view* pstrValue) const
{
    const std::optional<size_t> uPosition = FindProperty(eKey);
    const size_t uColon = uPosition ? m_strText.find(':', *uPosition) : kNone;
    if (uColon == kNone)
        return std::nullopt;
    const std::string_view strRest = m_strText.substr(uColon + 1);
    *pstrValue = GetFirstLine(strRest);
    if (pstrValue->size() == strRest.size()) // no line end
        return std::nullopt;
    return uPosition;
}

SFullName SplitFullName(std::string_view strValue)
{
    const size_t uSpace = strValue.find(' ', std::min(strValue.find_first_not_of(' '), strValue.size()));
    if (uSpace == kNone || strValue.find_first_not_of(' ', uSpace) == kNone)
        return {strValue, {}};
    return {strValue.substr(0, uSpace), strValue.substr(uSpace + 1)};
}

std::u16string FilterNumber(std::u16string_view strValue)
{
    constexpr std::u16string_view kDialable = u"0123456789#*+pw";
    std::u16string strNumber;
    for (const char16_t c : strValue.substr(0, kMaxFilteredCharacters)) {
        if (kDialable.find(c) != kNone)
            strNumber += c;
        else if (c == u'P' || c == u'W')
            strNumber += c == u'P' ? u'p' : u'w';
    }
    return strNumber;
}

bool ReadSpeedDialList(std::string_view strValue, std::array<uint32_t, kSpeedDialCount>* pSpeedDials, size_t* puCount)
{
    *puCount = 0;
    for (size_t uBegin = 0; uBegin <= strValue.size(); ++*puCount) {
        const size_t uEnd = std::min(strValue.find(',', uBegin), strValue.size());
        const std::string_view strToken = strValue.substr(uBegin, uEnd - uBegin);
        if (strToken.empty() || !std::ranges::all_of(strToken, IsDigit))
            return false;
        if (*puCount < kSpeedDialCount)
            (*pSpeedDials)[*puCount] = ReadUnsigned(strToken);
        uBegin = uEnd + 1;
    }
    return true;
}
