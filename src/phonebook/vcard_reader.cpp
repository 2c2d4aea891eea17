#include "phonebook/vcard_reader.h"

#include <algorithm>
#include <limits>

namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr size_t kMaxFilteredCharacters = 260;

constexpr char ToUpper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr bool IsLineEnd(char c)
{
    return c == '\r' || c == '\n';
}

// The keys that begin with the same letter: kVCardKeys[uFirst] up to, not including, kVCardKeys[uEnd], and what they
// have in common. Looking for that first keeps a text full of such letters cheap.
struct SKeyGroup
{
    size_t uFirst = 0;
    size_t uEnd = 0;
    std::string_view strCommon;
};

constexpr std::string_view GetCommon(std::string_view strOne, std::string_view strOther)
{
    const auto itEnd = std::mismatch(strOne.begin(), strOne.end(), strOther.begin(), strOther.end()).first;
    return strOne.substr(0, static_cast<size_t>(itEnd - strOne.begin()));
}

// For each byte that a line may begin with.
constexpr auto kKeyGroups = [] {
    std::array<SKeyGroup, 256> Groups{};
    for (size_t uKey = 0; uKey < eKeyCount; ++uKey) {
        SKeyGroup& Group = Groups[static_cast<uint8_t>(kVCardKeys[uKey].front())];
        if (Group.uEnd == 0)
            Group = {.uFirst = uKey, .uEnd = 0, .strCommon = kVCardKeys[uKey]};
        Group.uEnd = uKey + 1;
        Group.strCommon = GetCommon(Group.strCommon, kVCardKeys[uKey]);
    }
    for (char c = 'a'; c <= 'z'; ++c)
        Groups[static_cast<uint8_t>(c)] = Groups[static_cast<uint8_t>(ToUpper(c))];
    return Groups;
}();

} // namespace

bool BeginsIgnoringCase(std::string_view strText, std::string_view strUpperCase)
{
    return strText.size() >= strUpperCase.size() &&
           std::equal(strUpperCase.begin(), strUpperCase.end(), strText.begin(),
                      [](char cUpper, char cText) { return cUpper == ToUpper(cText); });
}

bool ContainsIgnoringCase(std::string_view strText, std::string_view strUpperCase)
{
    return std::search(strText.begin(), strText.end(), strUpperCase.begin(), strUpperCase.end(),
                       [](char cText, char cUpper) { return ToUpper(cText) == cUpper; }) != strText.end();
}

CVCardText::CVCardText(std::string_view strText) : m_strText(strText.substr(0, strText.find('\0')))
{
    m_auPositions.fill(kNone);
    const size_t uSize = m_strText.size();
    const size_t uLastLine = std::max(m_strText.rfind('\r') + 1, m_strText.rfind('\n') + 1); // npos + 1 is 0
    for (size_t uPosition = 0; uPosition < uSize; ++uPosition) {
        const char c = m_strText[uPosition];
        if (c == ' ' || c == '\t')
            continue;
        if (kKeyGroups[static_cast<uint8_t>(c)].uEnd != 0)
            NoteKeys(uPosition);
        while (uPosition < uLastLine && !IsLineEnd(m_strText[uPosition]))
            ++uPosition;
    }
}

void CVCardText::NoteKeys(size_t uPosition)
{
    const std::string_view strRest = m_strText.substr(uPosition);
    const SKeyGroup& Group = kKeyGroups[static_cast<uint8_t>(strRest.front())];
    if (!BeginsIgnoringCase(strRest, Group.strCommon))
        return;
    for (size_t uKey = Group.uFirst; uKey < Group.uEnd; ++uKey)
        if (m_auPositions[uKey] == kNone && BeginsIgnoringCase(strRest, kVCardKeys[uKey]))
            m_auPositions[uKey] = uPosition;
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
    const auto itEnd = std::ranges::find_if(strRest, IsLineEnd);
    if (itEnd == strRest.end())
        return std::nullopt;
    *pstrValue = strRest.substr(0, static_cast<size_t>(itEnd - strRest.begin()));
    return uPosition;
}

SFullName SplitFullName(std::string_view strValue)
{
    const size_t uSpace = strValue.find(' ', std::min(strValue.find_first_not_of(' '), strValue.size()));
    if (uSpace == kNone || strValue.find_first_not_of(' ', uSpace) == kNone)
        return {strValue, {}};
    return {strValue.substr(0, uSpace), strValue.substr(uSpace + 1)};
}

std::string FilterNumber(std::string_view strValue)
{
    std::string strNumber;
    for (const char c : strValue.substr(0, kMaxFilteredCharacters)) {
        if (IsDigit(c) || c == '#' || c == '*' || c == '+' || c == 'p' || c == 'w')
            strNumber += c;
        else if (c == 'P' || c == 'W')
            strNumber += c == 'P' ? 'p' : 'w';
    }
    return strNumber;
}

int32_t ReadDecimal(std::string_view strValue)
{
    constexpr int64_t kLimit = int64_t{std::numeric_limits<int32_t>::max()} + 1;
    strValue.remove_prefix(std::min(strValue.find_first_not_of(" \t\v\f"), strValue.size()));
    const bool bNegative = strValue.starts_with('-');
    if (bNegative || strValue.starts_with('+'))
        strValue.remove_prefix(1);
    int64_t nValue = 0;
    for (size_t uDigit = 0; uDigit < strValue.size() && IsDigit(strValue[uDigit]); ++uDigit)
        nValue = std::min(nValue * 10 + (strValue[uDigit] - '0'), kLimit);
    return static_cast<int32_t>(bNegative ? -nValue : std::min(nValue, kLimit - 1));
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
            (*pSpeedDials)[*puCount] = static_cast<uint32_t>(ReadDecimal(strToken));
        uBegin = uEnd + 1;
    }
    return true;
}
