// Writes the library's iCalendar dialect: pure steps from the handset's event record to lines. The order of the lines,
// their bare CR LF ends and the empty line where there is no rule are what hosts parse; nothing is folded or escaped.
#pragma once

#include <string>
#include <string_view>

#include "calendar/event_records.h"

// "20090315T120000".
void AppendDateTime(std::string* pstrText, const DEV_DATE_TIME& tmDate);

// The VALARM of an alarm so many minutes before the start: four lines.
std::string FormatAlarm(int32_t nMinutes, uint32_t dwRingerID);

// The whole text. The zone's id is one of the table's; the rule has no line end.
std::string FormatiCalendar(const CAL_EVENT_INFO& EventInfo, std::string_view strRule, std::string_view strAlarm);
