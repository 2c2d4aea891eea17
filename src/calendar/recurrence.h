// Recurrence rules: the pure steps between the parts of an RRULE text and the numeric fields of the handset's event
// record, in both directions, and the checks that an event's start is an occurrence of its rule. Nothing here logs;
// lists are hostile text, and a number that has no place in its field is ignored.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "calendar/event_records.h"

enum ERepeatType : uint32_t
{
    eRepeatNone,
    eRepeatDaily,
    eRepeatWeekly,
    eRepeatWeekdays, // Monday to Friday
    eRepeatMonthly,
    eRepeatYearly
};

inline constexpr uint8_t kEveryDay = 255; // in the fields of weekdays: every such day, not the n-th

// From FREQ, in upper case; none for anything else.
uint32_t GetRepeatType(std::string_view strFrequency);

// The text of FREQ; "N/A" for an unknown type.
std::string_view GetFrequency(uint32_t dwRepeatType);

// Does a BYDAY list name Monday to Friday and no other day?
bool NamesWeekdays(std::string_view strByDay);

// Enter a list's items into the record.
void SetByMonth(std::string_view strByMonth, CAL_EVENT_INFO* pEventInfo);
void SetByDay(std::string_view strByDay, CAL_EVENT_INFO* pEventInfo);
void SetByMonthDay(std::string_view strByMonthDay, CAL_EVENT_INFO* pEventInfo);

// Is the start, a date that exists, in the record's list?
bool IsStartInByMonth(const CAL_EVENT_INFO& EventInfo);
bool IsStartInByDay(const CAL_EVENT_INFO& EventInfo);
bool IsStartInByMonthDay(const CAL_EVENT_INFO& EventInfo);

// The record's lists as text, empty for an empty list. Months that are counted from the end are not written.
std::string MakeByDay(const CAL_EVENT_INFO& EventInfo);
std::string MakeByMonth(const CAL_EVENT_INFO& EventInfo);
std::string MakeByMonthDay(const CAL_EVENT_INFO& EventInfo);
