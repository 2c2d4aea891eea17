// The calendar of the handsets whose events carry an interval and lists of weekdays, months and days, and whose alarms
// may ring two hours before: the one class of calendar that is created. Each hook calls CCalendar's first.
#pragma once

#include "calendar/calendar.h"

class CCalendarEx : public CCalendar
{
public:
    bool GetRRuleProp(const CiCalText& Event, ICAL_PROPERTIES* pProperties) override;
    bool CheckTriggerRange(int32_t nMinutes) override;
    CAL_PARAM* AllocParam(DWORD* pdwSize) override;
    void FreeParam(CAL_PARAM* pParam) override;
    ICAL_PROPERTIES* AllocProperties(DWORD* pdwSize) override;
    void FreeProperties(ICAL_PROPERTIES* pProperties) override;
    CAL_RET_EVENT* AllocRetEvent(DWORD* pdwSize) override;
    void FreeRetEvent(CAL_RET_EVENT* pRetEvent) override;
    CAL_EVENT_INFO* AllocEvents(DWORD dwCount, DWORD* pdwElementSize) override;
    void FreeEvents(CAL_EVENT_INFO* pEvents) override;
    void SetRRuleProp(std::string* pstrRule, const CAL_EVENT_INFO* pEventInfo) override;
    bool ComposeNrvRule(CAL_EVENT_INFO* pEventInfo, const ICAL_PROPERTIES* pProperties) override;
};
