// Texts and records of events for the tests of the iCalendar conversion.
#pragma once

#include <string>

#include "calendar/calendar_ex.h"

// A VCALENDAR with one VEVENT of these lines.
std::string Event(const std::string& lines);

// The same with a description, a start and an end an hour later, 20090310T120000 (a Tuesday) unless told otherwise.
std::string EventAt(const std::string& lines, const std::string& day = "20090310");

// Does the calendar take the text? The record is what it made of it.
bool Read(const std::string& text, CAL_EVENT_INFO* record);
// The record of a text that must be taken.
CAL_EVENT_INFO Read(const std::string& text);

// The text of a record; empty if it has none.
std::string Write(const CAL_EVENT_INFO& record);

// The line of a text that begins so, without its end; empty if there is none.
std::string Line(const std::string& text, const std::string& begin);

// "2009-03-15 12:00:00".
std::string Show(const DEV_DATE_TIME& date);

constexpr DEV_DATE_TIME At(uint16_t year, uint8_t month, uint8_t day, uint8_t hour = 0, uint8_t minute = 0,
                           uint16_t second = 0)
{
    return {hour, minute, second, day, month, year};
}
