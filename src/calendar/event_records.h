// The handset's calendar records, and what the calendar service keeps of a text or a reply while it works. Used by the
// calendar service and its iCalendar conversion alone. The packed records are the handset's layout.
#pragma once

#include <windows.h>

#include "common/date_time.h"
#include "common/packed.h"
#include "common/wide_field.h"
#include "link/command.h"

struct PHN_PACKED CAL_EVENT_INFO
{
    DEV_DATE_TIME tmStart; // this and the end: wall time of the zone
    DEV_DATE_TIME tmEnd;
    DEV_DATE_TIME tmCreated; // this and the next: UTC
    DEV_DATE_TIME tmModified;
    DEV_DATE_TIME tmAlarm;
    DEV_DATE_TIME tmUntil; // last date of the recurrence, UTC; year 0: none
    uint32_t dwTimeZoneID; // an index of the zone names
    uint32_t dwRepeatType; // an ERepeatType
    uint32_t dwRingerID;   // of the alarm
    uint32_t dwInfo60;
    uint32_t dwRepeatCount; // 0: the recurrence is not counted
    uint32_t dwInfo68;
    uint16_t wValid;
    uint16_t wAlarm; // 0: the event has no alarm
    WideField<80> szDescription;
    WideField<40> szUID;
    uint32_t dwInterval;
    uint8_t byDay[8];        // Monday to Sunday, see recurrence.h; the eighth is unused
    uint8_t byDayFromEnd[8]; // the same, counted from the end of the month
    uint8_t abyReserved[16];
    uint32_t dwByMonth;           // bit m - 1: month m
    uint32_t dwByMonthFromEnd;    // bit 0: December
    uint32_t dwByMonthDay;        // bit d - 1: day d
    uint32_t dwByMonthDayFromEnd; // bit 0: the last day of the month
};
static_assert(sizeof(CAL_EVENT_INFO) == 368);
PHN_OFFSET(CAL_EVENT_INFO, tmStart, 0);
PHN_OFFSET(CAL_EVENT_INFO, tmEnd, 8);
PHN_OFFSET(CAL_EVENT_INFO, tmCreated, 16);
PHN_OFFSET(CAL_EVENT_INFO, tmModified, 24);
PHN_OFFSET(CAL_EVENT_INFO, tmAlarm, 32);
PHN_OFFSET(CAL_EVENT_INFO, tmUntil, 40);
PHN_OFFSET(CAL_EVENT_INFO, dwTimeZoneID, 48);
PHN_OFFSET(CAL_EVENT_INFO, dwRepeatType, 52);
PHN_OFFSET(CAL_EVENT_INFO, dwRingerID, 56);
PHN_OFFSET(CAL_EVENT_INFO, dwInfo60, 60);
PHN_OFFSET(CAL_EVENT_INFO, dwRepeatCount, 64);
PHN_OFFSET(CAL_EVENT_INFO, dwInfo68, 68);
PHN_OFFSET(CAL_EVENT_INFO, wValid, 72);
PHN_OFFSET(CAL_EVENT_INFO, wAlarm, 74);
PHN_OFFSET(CAL_EVENT_INFO, szDescription, 76);
PHN_OFFSET(CAL_EVENT_INFO, szUID, 236);
PHN_OFFSET(CAL_EVENT_INFO, dwInterval, 316);
PHN_OFFSET(CAL_EVENT_INFO, byDay, 320);
PHN_OFFSET(CAL_EVENT_INFO, byDayFromEnd, 328);
PHN_OFFSET(CAL_EVENT_INFO, abyReserved, 336);
PHN_OFFSET(CAL_EVENT_INFO, dwByMonth, 352);
PHN_OFFSET(CAL_EVENT_INFO, dwByMonthFromEnd, 356);
PHN_OFFSET(CAL_EVENT_INFO, dwByMonthDay, 360);
PHN_OFFSET(CAL_EVENT_INFO, dwByMonthDayFromEnd, 364);

using CAL_RET_EVENT_CNT_RES = DEV_RX_NUMBER; // the reply to a read, which counts its events

struct PHN_PACKED CAL_RET_RES
{
    DEV_RX_HEADER rcRxHeader;
    uint32_t dwResult;
};
static_assert(sizeof(CAL_RET_RES) == 12);
PHN_OFFSET(CAL_RET_RES, rcRxHeader, 0);
PHN_OFFSET(CAL_RET_RES, dwResult, 8);

// What a write sends behind the request header.
struct PHN_PACKED CAL_PARAM
{
    uint32_t dwIndex;
    CAL_EVENT_INFO rcEventInfo;
};
static_assert(sizeof(CAL_PARAM) == 372);
PHN_OFFSET(CAL_PARAM, dwIndex, 0);
PHN_OFFSET(CAL_PARAM, rcEventInfo, 4);

// What a read brought: the reply's numbers, and the events copied from it.
struct CAL_RET_EVENT
{
    uint32_t dwResult;
    uint32_t dwNumOfEventInfo;
    CAL_EVENT_INFO* prcEventInfo;
};
