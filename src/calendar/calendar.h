// The calendar service: reads, writes and deletes the handset's events, one exchange each, and converts them to and
// from iCalendar text. CCalendar holds the operations and the plain recurrence rules; what handsets with the extended
// record add to them stands in CCalendarEx (calendar_ex.h). The virtual operations keep their order of slots. It has no
// state: all methods may run on any host threads at once.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include <windows.h>

#include "calendar/event_records.h"
#include "calendar/icalendar_reader.h"
#include "phnnrv.h"

class CCalendar
{
public:
    CCalendar() = default;
    virtual ~CCalendar() = default;
    CCalendar(const CCalendar&) = delete;
    CCalendar& operator=(const CCalendar&) = delete;

    // The operations. On false, *pError says why.
    bool GetEvent(HANDLE hDevice, DWORD dwIndex, PHN_EVENT_RECORD* pRecord, PHN_ERROR* pError);
    bool SetEvent(HANDLE hDevice, DWORD dwIndex, PHN_EVENT_RECORD* pRecord, PHN_ERROR* pError);
    bool DeleteEvent(HANDLE hDevice, DWORD dwIndex, PHN_ERROR* pError);
    bool DeleteAllEvents(HANDLE hDevice, PHN_ERROR* pError);

    // Fills a zeroed record from iCalendar text. False, logged, if the text is rejected; the record is partly filled
    // then. The properties are room for what the text states; they are views into it.
    virtual bool iCalendarToNorvik(CAL_EVENT_INFO* pEventInfo, ICAL_PROPERTIES* pProperties, const char* pszSource,
                                   DWORD dwSourceLength);

    // The iCalendar text of a record. False, logged, if the record has no such text.
    virtual bool NorvikToiCalendar(std::string* pstrCalendar, const CAL_EVENT_INFO* pEventInfo);

    // Steps of DecodeData, which reads the span of a VCALENDAR: the optional alarm, the event's own properties, and the
    // parts of its recurrence rule behind FREQ. False if the text lacks or garbles what must be there.
    virtual bool GetAlarmProp(std::string_view strEvent, ICAL_PROPERTIES* pProperties);
    virtual bool GetEventProp(const CiCalText& Event, ICAL_PROPERTIES* pProperties);
    virtual bool GetRRuleProp(const CiCalText& Event, ICAL_PROPERTIES* pProperties);
    virtual bool DecodeData(std::string_view strCalendar, ICAL_PROPERTIES* pProperties);

    // May an alarm ring so many minutes before the start?
    virtual bool CheckTriggerRange(int32_t nMinutes);

    // Zeroed memory for an operation, and its size; null when memory is short. The events are an array of dwCount.
    virtual CAL_PARAM* AllocParam(DWORD* pdwSize) = 0;
    virtual void FreeParam(CAL_PARAM* pParam) = 0;
    virtual ICAL_PROPERTIES* AllocProperties(DWORD* pdwSize) = 0;
    virtual void FreeProperties(ICAL_PROPERTIES* pProperties) = 0;
    virtual CAL_RET_EVENT* AllocRetEvent(DWORD* pdwSize) = 0;
    virtual void FreeRetEvent(CAL_RET_EVENT* pRetEvent) = 0;
    virtual CAL_EVENT_INFO* AllocEvents(DWORD dwCount, DWORD* pdwElementSize) = 0;
    virtual void FreeEvents(CAL_EVENT_INFO* pEvents) = 0;

    // Steps of NorvikToiCalendar: the RRULE line without its line end, or nothing; and the VALARM lines, or nothing.
    // SetiCALAlarmProp is false if the alarm or the start is no date-time, or the alarm lies after the start.
    virtual void SetRRuleProp(std::string* pstrRule, const CAL_EVENT_INFO* pEventInfo);
    virtual bool SetiCALAlarmProp(std::string* pstrAlarm, const CAL_EVENT_INFO* pEventInfo);

    // Enters the recurrence into a record whose start is filled. False if the start is no occurrence of the rule, or
    // the rule's end is out of range.
    virtual bool ComposeNrvRule(CAL_EVENT_INFO* pEventInfo, const ICAL_PROPERTIES* pProperties);

private:
    bool UnpackEvent(std::string* pstrCalendar, std::span<const uint8_t> Data, CAL_RET_EVENT* pRetEvent,
                     PHN_ERROR* pError);
    bool ReadAlarm(int64_t nStart, const ICAL_PROPERTIES& Properties, CAL_EVENT_INFO* pEventInfo);
};
