#include "calendar/calendar_ex.h"

#include <new>

#include "calendar/recurrence.h"
#include "common/decimal.h"

namespace {

constexpr int32_t kTwoHours = 120; // minutes

void AppendPart(std::string* pstrRule, std::string_view strName, std::string_view strValue)
{
    if (!strValue.empty())
        pstrRule->append(pstrRule->empty() ? "RRULE:" : ";").append(strName).append(strValue);
}

// A part of the rule is entered, and then it must list the start. An absent part lists everything.
bool ComposePart(const std::optional<std::string_view>& strPart, CAL_EVENT_INFO* pEventInfo,
                 void (*pfnSet)(std::string_view, CAL_EVENT_INFO*), bool (*pfnIsStartIn)(const CAL_EVENT_INFO&))
{
    if (!strPart)
        return true;
    pfnSet(*strPart, pEventInfo);
    return pfnIsStartIn(*pEventInfo);
}

} // namespace

bool CCalendarEx::GetRRuleProp(const CiCalText& Event, ICAL_PROPERTIES* pProperties)
{
    CCalendar::GetRRuleProp(Event, pProperties);
    const std::string_view strRest = GetRestOfRule(Event);
    pProperties->strByMonthDay = GetiCalParameter(strRest, "BYMONTHDAY", kMaxValue);
    pProperties->strByMonth = GetiCalParameter(strRest, "BYMONTH", kMaxValue);
    pProperties->strInterval = GetiCalParameter(strRest, "INTERVAL", kMaxValue);
    return true;
}

bool CCalendarEx::CheckTriggerRange(int32_t nMinutes)
{
    return CCalendar::CheckTriggerRange(nMinutes) || nMinutes == kTwoHours;
}

void CCalendarEx::SetRRuleProp(std::string* pstrRule, const CAL_EVENT_INFO* pEventInfo)
{
    CCalendar::SetRRuleProp(pstrRule, pEventInfo);
    if (pEventInfo->dwInterval != 0)
        AppendPart(pstrRule, "INTERVAL=", std::to_string(static_cast<int32_t>(pEventInfo->dwInterval)));
    AppendPart(pstrRule, "BYDAY=", MakeByDay(*pEventInfo));
    AppendPart(pstrRule, "BYMONTH=", MakeByMonth(*pEventInfo));
    AppendPart(pstrRule, "BYMONTHDAY=", MakeByMonthDay(*pEventInfo));
}

bool CCalendarEx::ComposeNrvRule(CAL_EVENT_INFO* pEventInfo, const ICAL_PROPERTIES* pProperties)
{
    if (!CCalendar::ComposeNrvRule(pEventInfo, pProperties))
        return false;
    if (pEventInfo->dwRepeatType == eRepeatWeekdays) // its list says so here
        pEventInfo->dwRepeatType = eRepeatWeekly;
    const auto& strInterval = pProperties->strInterval;
    pEventInfo->dwInterval = strInterval ? static_cast<uint32_t>(ReadDecimal(*strInterval)) : 1;
    return ComposePart(pProperties->strByMonth, pEventInfo, SetByMonth, IsStartInByMonth) &&
           ComposePart(pProperties->strByDay, pEventInfo, SetByDay, IsStartInByDay) &&
           ComposePart(pProperties->strByMonthDay, pEventInfo, SetByMonthDay, IsStartInByMonthDay);
}

CAL_PARAM* CCalendarEx::AllocParam(DWORD* pdwSize)
{
    *pdwSize = sizeof(CAL_PARAM);
    return new (std::nothrow) CAL_PARAM();
}

void CCalendarEx::FreeParam(CAL_PARAM* pParam)
{
    delete pParam;
}

ICAL_PROPERTIES* CCalendarEx::AllocProperties(DWORD* pdwSize)
{
    *pdwSize = sizeof(ICAL_PROPERTIES);
    return new (std::nothrow) ICAL_PROPERTIES();
}

void CCalendarEx::FreeProperties(ICAL_PROPERTIES* pProperties)
{
    delete pProperties;
}

CAL_RET_EVENT* CCalendarEx::AllocRetEvent(DWORD* pdwSize)
{
    *pdwSize = sizeof(CAL_RET_EVENT);
    return new (std::nothrow) CAL_RET_EVENT();
}

void CCalendarEx::FreeRetEvent(CAL_RET_EVENT* pRetEvent)
{
    delete pRetEvent;
}

CAL_EVENT_INFO* CCalendarEx::AllocEvents(DWORD dwCount, DWORD* pdwElementSize)
{
    *pdwElementSize = sizeof(CAL_EVENT_INFO);
    return new (std::nothrow) CAL_EVENT_INFO[dwCount]();
}

void CCalendarEx::FreeEvents(CAL_EVENT_INFO* pEvents)
{
    delete[] pEvents;
}
