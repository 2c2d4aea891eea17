#include "calendar/icalendar_reader.h"

#include <algorithm>
#include <string>

#include "common/ascii_case.h"
#include "common/decimal.h"
#include "common/keyed_lines.h"

namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr size_t kMinDateLength = 15;
constexpr int32_t kFirstYear = 1981;

constexpr CLineKeys kLineKeys(kiCalKeys);

// Apart, as it stands first, and a calendar's text is not searched beyond it.
constexpr std::string_view kVersion[] = {"VERSION"};
constexpr CLineKeys kVersionKey(kVersion);

constexpr bool IsWordCharacter(char ch)
{
    return IsDigit(ch) || (ToUpper(ch) >= 'A' && ToUpper(ch) <= 'Z');
}

// Does the word at the position end where the name does?
bool EndsWord(std::string_view strText, size_t uEnd)
{
    return uEnd >= strText.size() || !IsWordCharacter(strText[uEnd]);
}

// The text behind the first delimiter that follows a position.
std::optional<std::string_view> GetBehind(std::string_view strText, size_t uPosition, char cDelimiter)
{
    const size_t uDelimiter = strText.find(cDelimiter, uPosition);
    if (uDelimiter == kNone)
        return std::nullopt;
    return strText.substr(uDelimiter + 1);
}

std::optional<std::string_view> Limit(std::string_view strValue, size_t uMaxValue)
{
    if (strValue.size() > uMaxValue)
        return std::nullopt;
    return strValue;
}

// The value of the property whose name stands at the position.
std::optional<std::string_view> GetValueAt(std::string_view strText, size_t uPosition, std::string_view strName,
                                           char cDelimiter, size_t uMaxValue)
{
    const size_t uNameEnd = uPosition + strName.size();
    if (!EndsWord(strText, uNameEnd))
        return std::nullopt;
    const std::optional<std::string_view> strRest = GetBehind(strText, uNameEnd, cDelimiter);
    if (!strRest)
        return std::nullopt;
    const std::string_view strLine = GetFirstLine(*strRest);
    if (strLine.size() < strRest->size())
        return Limit(strLine, uMaxValue);
    return Limit(strRest->substr(0, strRest->find_first_of(":;,=")), uMaxValue);
}

// Takes the number of the next characters, and then one separator if it is next.
int32_t TakeNumber(std::string_view* pstrRest, size_t uDigits, std::string_view strSeparators)
{
    const int32_t nNumber = ReadDecimal(pstrRest->substr(0, uDigits));
    pstrRest->remove_prefix(std::min(uDigits, pstrRest->size()));
    if (!pstrRest->empty() && strSeparators.find(pstrRest->front()) != kNone)
        pstrRest->remove_prefix(1);
    return nNumber;
}

} // namespace

std::optional<std::string_view> GetiCalComponent(std::string_view strText, std::string_view strName)
{
    const std::string strBegin = std::string("BEGIN:").append(strName);
    const size_t uBegin = strText.find(strBegin);
    if (uBegin == kNone)
        return std::nullopt;
    const std::string_view strBehind = strText.substr(uBegin + strBegin.size());
    const size_t uEnd = strBehind.find(std::string("END:").append(strName));
    if (uEnd == kNone)
        return std::nullopt;
    return strBehind.substr(0, uEnd);
}

CiCalText::CiCalText(std::string_view strText) : m_strText(strText), m_auPositions(FindKeyedLines(kLineKeys, strText))
{
}

std::optional<std::string_view> CiCalText::GetiCalProperty(EiCalKey eKey, char cDelimiter, size_t uMaxValue) const
{
    if (m_auPositions[eKey] == kNone)
        return std::nullopt;
    return GetValueAt(m_strText, m_auPositions[eKey], kLineKeys[eKey], cDelimiter, uMaxValue);
}

std::optional<std::string_view> GetVersion(std::string_view strCalendar)
{
    const auto [uPosition] = FindKeyedLines(kVersionKey, strCalendar);
    if (uPosition == kNone)
        return std::nullopt;
    return GetValueAt(strCalendar, uPosition, kVersionKey[0], ':', kMaxValue);
}

std::optional<std::string_view> GetLeadingProperty(std::string_view strValue, std::string_view strName, char cDelimiter,
                                                   size_t uMaxValue)
{
    const size_t uPosition = std::min(strValue.find_first_not_of(" \t"), strValue.size());
    if (!BeginsIgnoringCase(strValue.substr(uPosition), strName))
        return std::nullopt;
    return GetValueAt(strValue, uPosition, strName, cDelimiter, uMaxValue);
}

std::optional<std::string_view> GetiCalParameter(std::string_view strValue, std::string_view strName, size_t uMaxValue)
{
    const size_t uPosition = FindIgnoringCase(strValue, strName);
    if (uPosition == kNone || (uPosition > 0 && IsWordCharacter(strValue[uPosition - 1])))
        return std::nullopt;
    const size_t uNameEnd = uPosition + strName.size();
    const auto strRest = EndsWord(strValue, uNameEnd) ? GetBehind(strValue, uNameEnd, '=') : std::nullopt;
    if (!strRest)
        return std::nullopt;
    return Limit(strRest->substr(0, strRest->find_first_of(";=")), uMaxValue);
}

std::string_view GetRestOfRule(const CiCalText& Event)
{
    const std::string_view strRule = Event.GetiCalProperty(eKeyRRule, ':').value_or(std::string_view());
    const size_t uPosition = strRule.find(';');
    return uPosition == kNone ? std::string_view() : strRule.substr(uPosition + 1);
}

std::string_view GetBareUID(std::string_view strUID)
{
    const size_t uOpening = strUID.find('{');
    const size_t uClosing = strUID.rfind('}');
    if (uOpening == kNone || uClosing == kNone || uClosing < uOpening)
        return strUID;
    return strUID.substr(uOpening + 1, uClosing - uOpening - 1);
}

std::optional<std::string_view> GetTriggerMinutes(std::string_view strTrigger)
{
    const size_t uMinus = strTrigger.find('-');
    const size_t uPeriod = uMinus == kNone ? kNone : strTrigger.find('P', uMinus);
    const size_t uMinutes = strTrigger.rfind('M');
    if (uPeriod == kNone || uMinutes == kNone || uMinutes < uPeriod)
        return std::nullopt;
    return strTrigger.substr(uPeriod + 1, uMinutes - uPeriod - 1);
}

std::optional<SCalDate> ParseiCalDate(std::string_view strValue)
{
    if (strValue.size() < kMinDateLength)
        return std::nullopt;
    constexpr std::string_view kDateSeparators = "/:\\-";
    constexpr std::string_view kTimeSeparators = ":-";
    SCalDate Date;
    Date.nYear = TakeNumber(&strValue, 4, kDateSeparators);
    Date.nMonth = TakeNumber(&strValue, 2, kDateSeparators);
    Date.nDay = TakeNumber(&strValue, 2, "");
    if (!strValue.starts_with('T'))
        return std::nullopt;
    strValue.remove_prefix(1);
    Date.nHour = TakeNumber(&strValue, 2, kTimeSeparators);
    Date.nMinute = TakeNumber(&strValue, 2, kTimeSeparators);
    Date.nSecond = TakeNumber(&strValue, 2, "");
    Date.bUtc = strValue.starts_with('Z') || strValue.starts_with('z');
    return Date;
}

bool CheckDateRange(const SCalDate& Date)
{
    return Date.nYear >= kFirstYear && Date.nMonth >= 1 && Date.nMonth <= 12 && Date.nDay >= 1 && Date.nDay <= 31;
}
