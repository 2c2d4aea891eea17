// The iCalendar conversion of all handsets, in both directions.
#include <algorithm>

#include "calendar/calendar.h"
#include "calendar/icalendar_writer.h"
#include "calendar/local_time.h"
#include "calendar/recurrence.h"
#include "calendar/time_zones.h"
#include "common/ascii_case.h"
#include "common/decimal.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CCALENDAR};

constexpr uint32_t kNoRinger = 255;

// The longest values, in characters, where another limit than kMaxValue holds.
constexpr size_t kMaxDate = 20;
constexpr size_t kMaxTimeZone = 9;
constexpr size_t kMaxFrequency = 11;
constexpr size_t kMaxTrigger = 9;
constexpr size_t kMaxRingerID = 9;
constexpr size_t kMaxByDay = 39;
constexpr size_t kMaxCount = 11;

template <typename... Args>
bool Reject(CLogFormat<std::type_identity_t<Args>...> Format, const Args&... Values)
{
    Log.Error(Format, Values...);
    return false;
}

DEV_DATE_TIME ToDeviceTime(const SCalDate& Date)
{
    return {.byHour = static_cast<uint8_t>(Date.nHour),
            .byMinute = static_cast<uint8_t>(Date.nMinute),
            .wSecond = static_cast<uint16_t>(Date.nSecond),
            .byDay = static_cast<uint8_t>(Date.nDay),
            .byMonth = static_cast<uint8_t>(Date.nMonth),
            .wYear = static_cast<uint16_t>(Date.nYear)};
}

// The zone of an event, and the seconds that bring its times there.
struct SZone
{
    uint32_t dwTimeZoneID = kFloating;
    int32_t nOffset = 0;
};

SZone FindZone(const std::optional<std::string_view>& strTimeZone, bool bUtc)
{
    if (!strTimeZone)
        return {.dwTimeZoneID = bUtc ? kUtc : kFloating};
    if (const auto dwTimeZoneID = FindTimeZoneID(*strTimeZone))
        return {.dwTimeZoneID = *dwTimeZoneID};
    if (const auto nOffset = FindTimeZoneOffset(*strTimeZone))
        return {.dwTimeZoneID = kUtc, .nOffset = *nOffset};
    return {};
}

// One end of an event: its date-time as a text states it, and as a local time in seconds. False, logged, if it is none.
bool ReadDate(const char* pszWhich, std::string_view strValue, SCalDate* pDate, int64_t* pnSeconds)
{
    const std::optional<SCalDate> Date = ParseiCalDate(strValue);
    if (!Date)
        return Reject("iCalendarToNorvik - %s Date ParseiCalDate returned false.", pszWhich);
    if (!CheckDateRange(*Date))
        return Reject("iCalendarToNorvik - %s Date CheckDateRange returned false.", pszWhich);
    *pDate = *Date;
    *pnSeconds = LocalToSeconds(*Date);
    return *pnSeconds > 0 || Reject("iCalendarToNorvik - ct%sDate tDate = %d(0x%X).", pszWhich, *pnSeconds, *pnSeconds);
}

bool StoreDate(const char* pszWhich, int64_t nSeconds, DEV_DATE_TIME* ptmDate)
{
    return SecondsToLocal(nSeconds, ptmDate) ||
           Reject("iCalendarToNorvik - ct%sDate tDate = %d(0x%X).", pszWhich, nSeconds, nSeconds);
}

// Start, end and zone. False, logged, if they make no event.
bool ReadTimes(const ICAL_PROPERTIES& Properties, CAL_EVENT_INFO* pEventInfo, int64_t* pnStart)
{
    SCalDate Start;
    SCalDate End;
    int64_t nEnd = 0;
    if (!ReadDate("Start", Properties.strStart, &Start, pnStart))
        return false;
    const SZone Zone = FindZone(Properties.strTimeZone, Start.bUtc);
    pEventInfo->dwTimeZoneID = Zone.dwTimeZoneID;
    *pnStart += Zone.nOffset;
    if (!StoreDate("Start", *pnStart, &pEventInfo->tmStart) || !ReadDate("End", Properties.strEnd, &End, &nEnd))
        return false;
    nEnd += Zone.nOffset;
    if (!StoreDate("End", nEnd, &pEventInfo->tmEnd))
        return false;
    const int64_t nMinutes = (nEnd - *pnStart) / 60;
    return nMinutes >= 0 || Reject("iCalendarToNorvik - ctsDateDif.GetTotalMinutes() = %d(0x%X).", nMinutes, nMinutes);
}

// When the event was created or modified. A value that is no date-time leaves the field zero.
bool ReadStamp(const char* pszWhich, const std::optional<std::string_view>& strValue, DEV_DATE_TIME* ptmStamp)
{
    const std::optional<SCalDate> Date = strValue ? ParseiCalDate(*strValue) : std::nullopt;
    if (!Date)
        return true;
    *ptmStamp = ToDeviceTime(*Date);
    return CheckDateRange(*Date) || Reject("iCalendarToNorvik - %s Date CheckDateRange returned false.", pszWhich);
}

} // namespace

bool CCalendar::iCalendarToNorvik(CAL_EVENT_INFO* pEventInfo, ICAL_PROPERTIES* pProperties, const char* pszSource,
                                  DWORD dwSourceLength)
{
    if (!pszSource || dwSourceLength == 0)
        return Reject("iCalendarToNorvik - pszSource is NULL or nSrcLen is 0.");
    const auto strCalendar = GetiCalComponent({pszSource, dwSourceLength}, "VCALENDAR");
    if (!strCalendar)
        return Reject("iCalendarToNorvik - GetiCalComponent returned false.");
    if (!DecodeData(strCalendar->substr(0, strCalendar->find('\0')), pProperties))
        return Reject("iCalendarToNorvik - DecodeData returned false.");
    int64_t nStart = 0;
    if (!ReadTimes(*pProperties, pEventInfo, &nStart) || !ReadAlarm(nStart, *pProperties, pEventInfo))
        return false;
    const auto& strRingerID = pProperties->strRingerID;
    pEventInfo->dwRingerID = strRingerID ? static_cast<uint32_t>(ReadDecimal(*strRingerID)) : kNoRinger;
    if (!ReadStamp("Creation", pProperties->strCreated, &pEventInfo->tmCreated) ||
        !ReadStamp("Modified", pProperties->strModified, &pEventInfo->tmModified))
        return false;
    if (!ComposeNrvRule(pEventInfo, pProperties))
        return Reject("iCalendarToNorvik - ComposeNrvRule returned false.");
    pEventInfo->szUID.SetText(pProperties->strUID); // this and the next are cut where their fields end
    pEventInfo->szDescription.SetText(pProperties->strDescription);
    pEventInfo->wValid = 1;
    return true;
}

bool CCalendar::ReadAlarm(int64_t nStart, const ICAL_PROPERTIES& Properties, CAL_EVENT_INFO* pEventInfo)
{
    if (!Properties.strTriggerMinutes)
        return true;
    const int32_t nMinutes = ReadDecimal(*Properties.strTriggerMinutes);
    if (!CheckTriggerRange(nMinutes))
        return Reject("iCalendarToNorvik - CheckTriggerRange returned false.");
    const int64_t nAlarm = nStart - int64_t{nMinutes} * 60;
    if (!SecondsToLocal(nAlarm, &pEventInfo->tmAlarm))
        return Reject("iCalendarToNorvik - tAlarmTime = %d(0x%X).", nAlarm, nAlarm);
    pEventInfo->wAlarm = 1;
    return true;
}

bool CCalendar::NorvikToiCalendar(std::string* pstrCalendar, const CAL_EVENT_INFO* pEventInfo)
{
    if (pEventInfo->dwTimeZoneID >= TIME_ZONE_SIZE)
        return Reject("NorvikToiCalendar - prcEventInfo->dwTimeZoneID(%d, 0x%X) is greater or equal than "
                      "TIME_ZONE_SIZE(%d, 0x%X).",
                      uint32_t{pEventInfo->dwTimeZoneID}, uint32_t{pEventInfo->dwTimeZoneID}, TIME_ZONE_SIZE,
                      TIME_ZONE_SIZE);
    std::string strRule;
    SetRRuleProp(&strRule, pEventInfo);
    std::string strAlarm;
    if (!SetiCALAlarmProp(&strAlarm, pEventInfo))
        return Reject("NorvikToiCalendar - SetiCALAlarmProp returned false");
    *pstrCalendar = FormatiCalendar(*pEventInfo, strRule, strAlarm);
    return true;
}

bool CCalendar::GetAlarmProp(std::string_view strEvent, ICAL_PROPERTIES* pProperties)
{
    const auto strAlarm = GetiCalComponent(strEvent, "VALARM");
    if (!strAlarm)
        return true;
    const CiCalText Alarm(*strAlarm);
    const auto strTrigger = Alarm.GetiCalProperty(eKeyTrigger, ':', kMaxTrigger);
    if (!strTrigger)
        return false;
    pProperties->strTriggerMinutes = GetTriggerMinutes(*strTrigger);
    if (const auto strAction = Alarm.GetiCalProperty(eKeyAction, ';'))
        pProperties->strRingerID = GetLeadingProperty(*strAction, "X-PHN-RINGER-ID", ':', kMaxRingerID);
    return pProperties->strTriggerMinutes.has_value();
}

bool CCalendar::GetEventProp(const CiCalText& Event, ICAL_PROPERTIES* pProperties)
{
    const auto strDescription = Event.GetiCalProperty(eKeyDescription, ':');
    const auto strStart = Event.GetiCalProperty(eKeyDtStart, ':', kMaxDate);
    const auto strEnd = Event.GetiCalProperty(eKeyDtEnd, ':', kMaxDate);
    if (!strDescription || !strStart || !strEnd)
        return false;
    pProperties->strDescription = *strDescription;
    pProperties->strStart = *strStart;
    pProperties->strEnd = *strEnd;
    if (const auto strRule = Event.GetiCalProperty(eKeyRRule, ':')) {
        const auto strFrequency = GetLeadingProperty(*strRule, "FREQ", '=', kMaxFrequency);
        if (!strFrequency)
            return false;
        pProperties->strFrequency = *strFrequency;
    }
    for (const EiCalKey eKey : {eKeyDtStart, eKeyDtEnd}) { // the end's zone is the one that counts
        const auto strParameters = Event.GetiCalProperty(eKey, ';');
        const auto strTimeZone =
            strParameters ? GetLeadingProperty(*strParameters, "TZID", '=', kMaxTimeZone) : std::nullopt;
        if (strTimeZone)
            pProperties->strTimeZone = strTimeZone;
    }
    pProperties->strCreated = Event.GetiCalProperty(eKeyCreated, ':', kMaxDate);
    pProperties->strModified = Event.GetiCalProperty(eKeyLastModified, ':', kMaxDate);
    pProperties->strUID = GetBareUID(Event.GetiCalProperty(eKeyUID, ':').value_or(std::string_view()));
    return true;
}

bool CCalendar::GetRRuleProp(const CiCalText& Event, ICAL_PROPERTIES* pProperties)
{
    const std::string_view strRest = GetRestOfRule(Event);
    pProperties->strByDay = GetiCalParameter(strRest, "BYDAY", kMaxByDay);
    pProperties->strCount = GetiCalParameter(strRest, "COUNT", kMaxCount);
    if (!pProperties->strCount)
        pProperties->strUntil = GetiCalParameter(strRest, "UNTIL", kMaxDate);
    return true;
}

bool CCalendar::DecodeData(std::string_view strCalendar, ICAL_PROPERTIES* pProperties)
{
    const auto strVersion = GetVersion(strCalendar);
    const auto strEvent = GetiCalComponent(strCalendar, "VEVENT");
    if (!strVersion || !EqualsIgnoringCase(*strVersion, "2.0") || !strEvent)
        return false;
    const CiCalText Event(*strEvent);
    if (!GetEventProp(Event, pProperties))
        return false;
    GetRRuleProp(Event, pProperties);
    return GetAlarmProp(*strEvent, pProperties);
}

bool CCalendar::CheckTriggerRange(int32_t nMinutes)
{
    constexpr int32_t kMinutes[] = {0, 5, 10, 15, 60, 1440, 2880};
    return std::ranges::find(kMinutes, nMinutes) != std::end(kMinutes);
}

void CCalendar::SetRRuleProp(std::string* pstrRule, const CAL_EVENT_INFO* pEventInfo)
{
    if (pEventInfo->dwRepeatType == eRepeatNone)
        return;
    pstrRule->append("RRULE:FREQ=").append(GetFrequency(pEventInfo->dwRepeatType));
    if (pEventInfo->dwRepeatCount != 0) {
        const auto nCount = static_cast<int32_t>(pEventInfo->dwRepeatCount);
        pstrRule->append(";COUNT=").append(std::to_string(nCount));
    } else if (pEventInfo->tmUntil.wYear != 0) {
        pstrRule->append(";UNTIL=");
        AppendDateTime(pstrRule, pEventInfo->tmUntil);
        pstrRule->append("Z");
    }
}

bool CCalendar::SetiCALAlarmProp(std::string* pstrAlarm, const CAL_EVENT_INFO* pEventInfo)
{
    if (pEventInfo->wAlarm == 0)
        return true;
    const int64_t nAlarm = LocalToSeconds(pEventInfo->tmAlarm);
    const int64_t nStart = LocalToSeconds(pEventInfo->tmStart);
    const int64_t nMinutes = (nStart - nAlarm) / 60;
    if (nAlarm <= 0 || nStart <= 0 || nMinutes < 0)
        return false;
    *pstrAlarm = FormatAlarm(static_cast<int32_t>(nMinutes), pEventInfo->dwRingerID);
    return true;
}

bool CCalendar::ComposeNrvRule(CAL_EVENT_INFO* pEventInfo, const ICAL_PROPERTIES* pProperties)
{
    pEventInfo->dwRepeatCount = 0;
    if (pProperties->strCount) {
        pEventInfo->dwRepeatCount = static_cast<uint32_t>(ReadDecimal(*pProperties->strCount));
    } else if (const auto Until = pProperties->strUntil ? ParseiCalDate(*pProperties->strUntil) : std::nullopt) {
        if (!CheckDateRange(*Until))
            return false;
        pEventInfo->tmUntil = ToDeviceTime(*Until);
    }
    pEventInfo->dwRepeatType = GetRepeatType(pProperties->strFrequency);
    const auto& strByDay = pProperties->strByDay;
    if (pEventInfo->dwRepeatType == eRepeatWeekly && strByDay && NamesWeekdays(*strByDay))
        pEventInfo->dwRepeatType = eRepeatWeekdays;
    return true;
}
