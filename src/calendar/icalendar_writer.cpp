#include "calendar/icalendar_writer.h"

#include <charconv>

#include "calendar/time_zones.h"

namespace {

constexpr std::string_view kLineEnd = "\r\n";

// With zeros in front up to the width.
void AppendNumber(std::string* pstrText, unsigned uNumber, size_t uWidth)
{
    char szDigits[10];
    const auto Result = std::to_chars(szDigits, szDigits + sizeof szDigits, uNumber);
    const auto uDigits = static_cast<size_t>(Result.ptr - szDigits);
    if (uDigits < uWidth)
        pstrText->append(uWidth - uDigits, '0');
    pstrText->append(szDigits, uDigits);
}

// What follows DTSTART and DTEND.
void AppendZoned(std::string* pstrText, uint32_t dwTimeZoneID, const DEV_DATE_TIME& tmDate)
{
    if (dwTimeZoneID != kFloating && dwTimeZoneID != kUtc)
        pstrText->append(";TZID=").append(kTimeZones[dwTimeZoneID]);
    pstrText->append(":");
    AppendDateTime(pstrText, tmDate);
    pstrText->append(dwTimeZoneID == kUtc ? "Z" : "").append(kLineEnd);
}

} // namespace

void AppendDateTime(std::string* pstrText, const DEV_DATE_TIME& tmDate)
{
    AppendNumber(pstrText, tmDate.wYear, 4);
    AppendNumber(pstrText, tmDate.byMonth, 2);
    AppendNumber(pstrText, tmDate.byDay, 2);
    pstrText->append("T");
    AppendNumber(pstrText, tmDate.byHour, 2);
    AppendNumber(pstrText, tmDate.byMinute, 2);
    AppendNumber(pstrText, tmDate.wSecond, 2);
}

std::string FormatAlarm(int32_t nMinutes, uint32_t dwRingerID)
{
    std::string strAlarm = "BEGIN:VALARM\r\nTRIGGER:-P";
    strAlarm.append(std::to_string(nMinutes)).append("M\r\nACTION;X-PHN-RINGER-ID:");
    return strAlarm.append(std::to_string(static_cast<int32_t>(dwRingerID))).append("\r\nEND:VALARM\r\n");
}

std::string FormatiCalendar(const CAL_EVENT_INFO& EventInfo, std::string_view strRule, std::string_view strAlarm)
{
    std::string strText;
    strText.reserve(512);
    strText.append("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nCREATED:");
    AppendDateTime(&strText, EventInfo.tmCreated);
    strText.append("Z\r\nLAST-MODIFIED:");
    AppendDateTime(&strText, EventInfo.tmModified);
    strText.append("Z\r\nUID:{").append(EventInfo.szUID.GetText());
    strText.append("}\r\nDESCRIPTION:").append(EventInfo.szDescription.GetText());
    strText.append("\r\nDTSTART");
    AppendZoned(&strText, EventInfo.dwTimeZoneID, EventInfo.tmStart);
    strText.append("DTEND");
    AppendZoned(&strText, EventInfo.dwTimeZoneID, EventInfo.tmEnd);
    strText.append(strRule).append(kLineEnd).append(strAlarm).append(kLineEnd);
    return strText.append("END:VEVENT\r\nEND:VCALENDAR\r\n");
}
